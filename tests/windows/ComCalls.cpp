#include "ComCalls.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <objbase.h>
#include <objidl.h>
#include <utility>
#include <vector>

// control.h spells pointers with a type of this header.
#include <oaidl.h>

#include <control.h>
#include <qedit.h>
#include <strmif.h>

namespace {

using Method = HRESULT(STDMETHODCALLTYPE*)(void*, void*, void*, void*, void*, void*, void*, void*);

/// The largest table of methods of a watched interface; classes may have further entries behind.
constexpr std::size_t kMethods = 48;
constexpr std::size_t kEntries = 80;
/// Offset to the object's begin, and type information, which the compiler keeps before the table.
constexpr std::size_t kBefore = 2;

enum MethodIndex : std::size_t {
    QueryInterfaceMethod = 0,
    AddRefMethod = 1,
    ReleaseMethod = 2,
    CreateClassEnumeratorMethod = 3,
    NextMethod = 3,
    BindToObjectMethod = 8,
    BindToStorageMethod = 9,
    PutOwnerMethod = 29,
};

struct WatchedInterface
{
    IID iid;
    std::size_t methods;
};

const std::array<WatchedInterface, 12> kWatched{{{__uuidof(ICreateDevEnum), 4},
                                                 {__uuidof(IEnumMoniker), 7},
                                                 {__uuidof(IMoniker), 23},
                                                 {__uuidof(IPropertyBag), 5},
                                                 {__uuidof(IGraphBuilder), 18},
                                                 {__uuidof(ICaptureGraphBuilder2), 12},
                                                 {__uuidof(IBaseFilter), 15},
                                                 {__uuidof(ISampleGrabber), 10},
                                                 {IID_IMediaControl, 16},
                                                 {IID_IVideoWindow, 46},
                                                 {IID_IMediaEventEx, 16},
                                                 {__uuidof(IAMVideoProcAmp), 6}}};

/// The table of an object's methods with ours in their place.
struct WatchedTable
{
    std::array<void*, kBefore + kEntries> entries{};
    void** original = nullptr;
    IID iid{};

    [[nodiscard]] void** begin() { return entries.data() + kBefore; }
};

std::mutex s_mutex;
std::map<std::pair<void**, std::size_t>, WatchedTable*> s_tables; ///< by the original table
std::map<void**, WatchedTable*> s_tablesByOurs;
const DWORD s_mainThread = ::GetCurrentThreadId();
int s_depth = 0; ///< of calls that are under way on the main thread
int s_calls = 0;
int s_failing = 0;
ComCalls::Failing s_how = ComCalls::Failing::Once;
int s_references = 0;
std::map<void*, void*> s_owners; ///< of the video windows
int s_ownedWindowsReleased = 0;

/// Whether the program makes this call: the test's camera, which is in the same file, makes calls
/// only within one of the program, or on other threads.
bool isOfTheProgram(const void* returnAddress)
{
    HMODULE module = nullptr;
    return ::GetCurrentThreadId() == s_mainThread && s_depth == 0 &&
           ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                    GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                static_cast<LPCWSTR>(returnAddress), &module) &&
           module == ::GetModuleHandleW(nullptr);
}

/// Counts a call of the program.
bool mustFail()
{
    ++s_calls;
    return s_calls == s_failing ||
           (s_how == ComCalls::Failing::FromThenOn && s_failing != 0 && s_calls > s_failing);
}

class CallUnderWay
{
public:
    CallUnderWay() { ++s_depth; }
    ~CallUnderWay() { --s_depth; }
    CallUnderWay(const CallUnderWay&) = delete;
    CallUnderWay& operator=(const CallUnderWay&) = delete;
};

WatchedTable* tableOf(void* object)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    const auto found = s_tablesByOurs.find(*static_cast<void***>(object));
    return found == s_tablesByOurs.end() ? nullptr : found->second;
}

void watch(void* object, const IID& iid);

/// Watches what a call has returned to the program.
void watchResult(const IID& iid, std::size_t method, void* const* arguments)
{
    const auto take = [](void* out, const IID& resultIid) {
        if (void* object = out ? *static_cast<void**>(out) : nullptr)
            watch(object, resultIid);
    };
    if (method == QueryInterfaceMethod)
        take(arguments[2], *static_cast<const IID*>(arguments[1]));
    else if (iid == __uuidof(ICreateDevEnum) && method == CreateClassEnumeratorMethod)
        take(arguments[2], __uuidof(IEnumMoniker));
    else if (iid == __uuidof(IEnumMoniker) && method == NextMethod)
        take(arguments[2], __uuidof(IMoniker));
    else if (iid == __uuidof(IMoniker) &&
             (method == BindToObjectMethod || method == BindToStorageMethod))
        take(arguments[4], *static_cast<const IID*>(arguments[3]));
}

/// Takes the place of each method. All arguments of the watched interfaces are integers or
/// pointers, so eight words are enough for each of them.
template <std::size_t Index>
HRESULT STDMETHODCALLTYPE watched(void* object, void* a1, void* a2, void* a3, void* a4, void* a5,
                                  void* a6, void* a7)
{
    WatchedTable* table = tableOf(object);
    const IID iid = table->iid;
    const auto original = reinterpret_cast<Method>(table->original[Index]);
    if (!isOfTheProgram(__builtin_return_address(0)))
        return original(object, a1, a2, a3, a4, a5, a6, a7);
    if (iid == IID_IVideoWindow && Index == PutOwnerMethod)
        s_owners[object] = a1;
    if (iid == IID_IVideoWindow && Index == ReleaseMethod && s_owners[object])
        ++s_ownedWindowsReleased;
    if (Index == AddRefMethod)
        ++s_references;
    else if (Index == ReleaseMethod)
        --s_references;
    else if (mustFail())
        return E_FAIL;
    HRESULT result = S_OK;
    {
        const CallUnderWay underWay;
        result = original(object, a1, a2, a3, a4, a5, a6, a7);
    }
    if (Index != AddRefMethod && Index != ReleaseMethod && SUCCEEDED(result)) {
        void* const arguments[] = {object, a1, a2, a3, a4};
        watchResult(iid, Index, arguments);
    }
    return result;
}

template <std::size_t... Index>
std::array<void*, sizeof...(Index)> allMethods(std::index_sequence<Index...>)
{
    return {reinterpret_cast<void*>(&watched<Index>)...};
}

/// Counts the reference that the program has got to @p object, and watches it.
void watch(void* object, const IID& iid)
{
    const auto* known = std::find_if(kWatched.begin(), kWatched.end(),
                                     [&iid](const auto& each) { return each.iid == iid; });
    if (known == kWatched.end())
        return;
    ++s_references;
    auto& entry = *static_cast<void***>(object);
    const std::lock_guard<std::mutex> lock(s_mutex);
    if (s_tablesByOurs.count(entry) > 0)
        return;
    WatchedTable*& table = s_tables[{entry, known->methods}];
    if (!table) {
        // Never freed: objects that the test does not know may keep it.
        table = new WatchedTable;
        table->original = entry;
        table->iid = iid;
        std::copy_n(entry - kBefore, table->entries.size(), table->entries.begin());
        const auto ours = allMethods(std::make_index_sequence<kMethods>());
        std::copy_n(ours.begin(), known->methods, table->begin());
        s_tablesByOurs[table->begin()] = table;
    }
    entry = table->begin();
}

HRESULT WINAPI createInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID iid,
                              LPVOID* object)
{
    using Function = HRESULT(WINAPI*)(REFCLSID, LPUNKNOWN, DWORD, REFIID, LPVOID*);
    static const auto ofTheSystem = reinterpret_cast<Function>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleW(L"ole32"), "CoCreateInstance")));
    if (!isOfTheProgram(__builtin_return_address(0)))
        return ofTheSystem(classId, outer, context, iid, object);
    if (mustFail())
        return E_FAIL;
    HRESULT result = S_OK;
    {
        const CallUnderWay underWay;
        result = ofTheSystem(classId, outer, context, iid, object);
    }
    if (SUCCEEDED(result))
        watch(*object, iid);
    return result;
}

} // namespace

/// The pointer through which the product's code calls the system's function: with it defined here,
/// the linker does not take the one of the import library.
extern "C" decltype(&createInstance) __imp_CoCreateInstance;
decltype(&createInstance) __imp_CoCreateInstance = &createInstance;

void ComCalls::restart(int failing, Failing how)
{
    s_calls = 0;
    s_failing = failing;
    s_how = how;
}

int ComCalls::count()
{
    return s_calls;
}

int ComCalls::references()
{
    return s_references;
}

int ComCalls::ownedWindowsReleased()
{
    return s_ownedWindowsReleased;
}
