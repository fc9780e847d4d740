#include "ScriptedDevNodes.h"

#include <algorithm>
#include <qt_windows.h>
#include <string_view>

// After qt_windows.h, which it needs.
#include <cfgmgr32.h>

namespace {

ScriptedDevNodes* s_nodes = nullptr;

enum Node : DEVINST {
    Hub = 1,
    Camera,
    VideoFunction,
    HidFunction,
    HidCollection,
};

const wchar_t* nameOf(DEVINST node)
{
    switch (node) {
    case Hub:
        return L"USB\\ROOT_HUB30\\4&1&0";
    case Camera:
        return L"USB\\VID_B206&PID_B215\\SVAA009500551";
    case VideoFunction:
        return L"USB\\VID_B206&PID_B215&MI_00\\6&2&0&0000";
    case HidFunction:
        return L"USB\\VID_B206&PID_B215&MI_03\\6&2&0&0003";
    default:
        return L"HID\\VID_B206&PID_B215&MI_03\\7&3&0&0000";
    }
}

CONFIGRET WINAPI locate(DEVINST* node, DEVINSTID_W name, ULONG)
{
    if (!s_nodes || !s_nodes->isPluggedIn || name != std::wstring_view(nameOf(HidCollection)))
        return CR_NO_SUCH_DEVNODE;
    *node = HidCollection;
    return CR_SUCCESS;
}

CONFIGRET WINAPI parent(DEVINST* found, DEVINST node, ULONG)
{
    switch (node) {
    case Camera:
        *found = Hub;
        return CR_SUCCESS;
    case VideoFunction:
    case HidFunction:
        *found = Camera;
        return CR_SUCCESS;
    case HidCollection:
        *found = HidFunction;
        return CR_SUCCESS;
    default:
        return CR_NO_SUCH_DEVNODE;
    }
}

CONFIGRET WINAPI child(DEVINST* found, DEVINST node, ULONG)
{
    switch (node) {
    case Hub:
        *found = Camera;
        return CR_SUCCESS;
    case Camera:
        *found = s_nodes && s_nodes->hasVideoFunction ? VideoFunction : HidFunction;
        return CR_SUCCESS;
    case HidFunction:
        *found = HidCollection;
        return CR_SUCCESS;
    default:
        return CR_NO_SUCH_DEVNODE;
    }
}

CONFIGRET WINAPI sibling(DEVINST* found, DEVINST node, ULONG)
{
    if (node != VideoFunction)
        return CR_NO_SUCH_DEVNODE;
    *found = HidFunction;
    return CR_SUCCESS;
}

CONFIGRET WINAPI idOf(DEVINST node, PWCHAR out, ULONG length, ULONG)
{
    const std::wstring_view name = nameOf(node);
    if (name.size() >= length)
        return CR_BUFFER_SMALL;
    std::copy(name.begin(), name.end(), out);
    out[name.size()] = L'\0';
    return CR_SUCCESS;
}

CONFIGRET WINAPI property(DEVINST node, ULONG which, PULONG, PVOID out, PULONG bytes, ULONG)
{
    using namespace std::string_view_literals;
    if (which != CM_DRP_COMPATIBLEIDS + 0U)
        return CR_NO_SUCH_VALUE;
    const std::wstring_view ids = node == VideoFunction
                                      ? L"USB\\Class_0e&SubClass_03&Prot_00\0USB\\Class_0e\0\0"sv
                                      : L"USB\\Class_03&SubClass_00&Prot_00\0USB\\Class_03\0\0"sv;
    const auto needed = static_cast<ULONG>(ids.size() * sizeof(wchar_t));
    if (*bytes < needed)
        return CR_BUFFER_SMALL;
    std::copy(ids.begin(), ids.end(), static_cast<wchar_t*>(out));
    *bytes = needed;
    return CR_SUCCESS;
}

CONFIGRET WINAPI listSize(PULONG length, LPGUID interfaceClass, DEVINSTID_W name, ULONG flags)
{
    constexpr GUID capture = {
        0x65E8773D, 0x8F56, 0x11D0, {0xA3, 0xB9, 0x00, 0xA0, 0xC9, 0x22, 0x31, 0x96}};
    *length = 1;
    if (!s_nodes || *interfaceClass != capture || flags != CM_GET_DEVICE_INTERFACE_LIST_PRESENT)
        return CR_SUCCESS;
    const int look = ++s_nodes->looks;
    if (look == s_nodes->leavesAtLook)
        s_nodes->isPluggedIn = false;
    if (name == std::wstring_view(nameOf(VideoFunction)) && look > s_nodes->looksInVain)
        *length = 100;
    return CR_SUCCESS;
}

} // namespace

/// The pointers through which the product's code calls the system's functions: with them defined
/// here, the linker does not take those of the import library.
extern "C" {
extern decltype(&locate) __imp_CM_Locate_DevNodeW;
decltype(&locate) __imp_CM_Locate_DevNodeW = &locate;
extern decltype(&parent) __imp_CM_Get_Parent;
decltype(&parent) __imp_CM_Get_Parent = &parent;
extern decltype(&child) __imp_CM_Get_Child;
decltype(&child) __imp_CM_Get_Child = &child;
extern decltype(&sibling) __imp_CM_Get_Sibling;
decltype(&sibling) __imp_CM_Get_Sibling = &sibling;
extern decltype(&idOf) __imp_CM_Get_Device_IDW;
decltype(&idOf) __imp_CM_Get_Device_IDW = &idOf;
extern decltype(&property) __imp_CM_Get_DevNode_Registry_PropertyW;
decltype(&property) __imp_CM_Get_DevNode_Registry_PropertyW = &property;
extern decltype(&listSize) __imp_CM_Get_Device_Interface_List_SizeW;
decltype(&listSize) __imp_CM_Get_Device_Interface_List_SizeW = &listSize;
}

ScriptedDevNodes::ScriptedDevNodes()
{
    s_nodes = this;
}

ScriptedDevNodes::~ScriptedDevNodes()
{
    s_nodes = nullptr;
}

QString ScriptedDevNodes::hidInterface()
{
    return QStringLiteral("\\\\?\\HID#VID_B206&PID_B215&MI_03#7&3&0&0000#"
                          "{4d1e55b2-f16f-11cf-88cb-001111000030}");
}
