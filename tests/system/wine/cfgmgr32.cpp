// Wine 8 does not have these functions of the configuration manager, or they report no devices,
// while its SetupAPI has the same device interfaces. The HID library for Windows does not start
// without them. Built as cfgmgr32.dll and placed beside a program, this replaces Wine's library for
// that program.
#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>
#include <string>
#include <vector>

namespace {

/// The concatenated paths, each with a terminating zero, and another zero at the end.
std::wstring interfacePaths(const GUID& interfaceClass)
{
    std::wstring paths;
    const HDEVINFO devices = ::SetupDiGetClassDevsW(&interfaceClass, nullptr, nullptr,
                                                    DIGCF_DEVICEINTERFACE | DIGCF_PRESENT);
    if (devices != INVALID_HANDLE_VALUE) {
        SP_DEVICE_INTERFACE_DATA found{};
        found.cbSize = sizeof found;
        for (DWORD i = 0;
             ::SetupDiEnumDeviceInterfaces(devices, nullptr, &interfaceClass, i, &found); ++i) {
            DWORD size = 0;
            ::SetupDiGetDeviceInterfaceDetailW(devices, &found, nullptr, 0, &size, nullptr);
            std::vector<BYTE> buffer(size);
            auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(buffer.data());
            detail->cbSize = sizeof *detail;
            if (::SetupDiGetDeviceInterfaceDetailW(devices, &found, detail, size, nullptr, nullptr))
                paths += detail->DevicePath + std::wstring(1, L'\0');
        }
        ::SetupDiDestroyDeviceInfoList(devices);
    }
    return paths + L'\0';
}

} // namespace

extern "C" {

CONFIGRET WINAPI CM_Get_Device_Interface_List_SizeW(PULONG length, LPGUID interfaceClass,
                                                    DEVINSTID_W, ULONG)
{
    *length = static_cast<ULONG>(interfacePaths(*interfaceClass).size());
    return CR_SUCCESS;
}

CONFIGRET WINAPI CM_Get_Device_Interface_ListW(LPGUID interfaceClass, DEVINSTID_W, PZZWSTR buffer,
                                               ULONG length, ULONG)
{
    const std::wstring paths = interfacePaths(*interfaceClass);
    if (length < paths.size())
        return CR_BUFFER_SMALL;
    paths.copy(buffer, paths.size());
    return CR_SUCCESS;
}

CONFIGRET WINAPI CM_Get_Device_Interface_PropertyW(LPCWSTR, const DEVPROPKEY*, DEVPROPTYPE*, PBYTE,
                                                   PULONG, ULONG)
{
    return CR_NO_SUCH_VALUE;
}

CONFIGRET WINAPI CM_Get_DevNode_PropertyW(DEVINST, const DEVPROPKEY*, DEVPROPTYPE*, PBYTE, PULONG,
                                          ULONG)
{
    return CR_NO_SUCH_VALUE;
}

CONFIGRET WINAPI CM_Locate_DevNodeW(PDEVINST, DEVINSTID_W, ULONG)
{
    return CR_NO_SUCH_DEVNODE;
}

CONFIGRET WINAPI CM_Get_Parent(PDEVINST, DEVINST, ULONG)
{
    return CR_NO_SUCH_DEVNODE;
}

} // extern "C"
