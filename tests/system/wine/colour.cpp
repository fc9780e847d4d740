// The library that installs the converter in a Wine prefix: regsvr32 colour.dll.
#include "ColourConverter.h"
#include "windows/ComPtr.h"

#include <string>
#include <uuids.h>

namespace {

const std::wstring kClassKey = L"Software\\Classes\\CLSID\\{1643E180-90F5-11CE-97D5-00AA0055595A}";

class ConverterFactory final : public ComObject<IClassFactory>
{
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        if (outer)
            return CLASS_E_NOAGGREGATION;
        const ComPtr<IBaseFilter> filter(new ColourConverter);
        return filter->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

bool setValue(const std::wstring& key, const wchar_t* name, const std::wstring& text)
{
    return ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(),
                             static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) ==
           ERROR_SUCCESS;
}

HMODULE thisLibrary()
{
    HMODULE library = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                             GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<LPCWSTR>(&thisLibrary), &library);
    return library;
}

} // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object)
{
    if (classId != CLSID_Colour)
        return CLASS_E_CLASSNOTAVAILABLE;
    const ComPtr<IClassFactory> factory(new ConverterFactory);
    return factory->QueryInterface(iid, object);
}

STDAPI DllCanUnloadNow()
{
    return S_FALSE;
}

STDAPI DllRegisterServer()
{
    std::wstring path(MAX_PATH, L'\0');
    path.resize(::GetModuleFileNameW(thisLibrary(), path.data(), MAX_PATH));
    if (!setValue(kClassKey + L"\\InprocServer32", nullptr, path) ||
        !setValue(kClassKey + L"\\InprocServer32", L"ThreadingModel", L"Both"))
        return E_FAIL;

    REGPINTYPES from{&MEDIATYPE_Video, &MEDIASUBTYPE_RGB24};
    REGPINTYPES to{&MEDIATYPE_Video, &MEDIASUBTYPE_RGB32};
    REGFILTERPINS2 pins[2]{};
    pins[0].nMediaTypes = 1;
    pins[0].lpMediaType = &from;
    pins[1].dwFlags = REG_PINFLAG_B_OUTPUT;
    pins[1].nMediaTypes = 1;
    pins[1].lpMediaType = &to;
    REGFILTER2 filter{};
    filter.dwVersion = 2;
    filter.dwMerit = MERIT_NORMAL;
    filter.cPins2 = 2;
    filter.rgPins2 = pins;
    ComPtr<IFilterMapper2> mapper;
    const HRESULT created = ::CoCreateInstance(CLSID_FilterMapper2, nullptr, CLSCTX_INPROC_SERVER,
                                               __uuidof(IFilterMapper2), mapper.putVoid());
    if (FAILED(created))
        return created;
    return mapper->RegisterFilter(CLSID_Colour, L"Color Space Converter", nullptr,
                                  &CLSID_LegacyAmFilterCategory, nullptr, &filter);
}
