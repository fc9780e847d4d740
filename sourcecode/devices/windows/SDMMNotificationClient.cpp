#include "SDMMNotificationClient.h"

#include "LogCategories.h"

#include <QByteArray>

// After mmdeviceapi.h, whose types it uses.
#include <propidl.h>

namespace {

/// Key of a device's friendly name; the toolchain's libraries do not define it.
constexpr PROPERTYKEY kFriendlyName = {
    {0xA45C254E, 0xDF1C, 0x4EFD, {0x80, 0x20, 0x67, 0xD1, 0x46, 0xA8, 0x50, 0xE0}}, 14};

class PropertyValue
{
public:
    PropertyValue() { ::PropVariantInit(&m_value); }
    ~PropertyValue() { ::PropVariantClear(&m_value); }
    PropertyValue(const PropertyValue&) = delete;
    PropertyValue& operator=(const PropertyValue&) = delete;

    [[nodiscard]] PROPVARIANT* put() { return &m_value; }
    [[nodiscard]] const wchar_t* text() const
    {
        return m_value.vt == VT_LPWSTR ? m_value.pwszVal : nullptr;
    }

private:
    PROPVARIANT m_value{};
};

/// @p text in the code page of the console, where support reads the log.
QByteArray consoleText(const wchar_t* text)
{
    if (!text)
        return {};
    constexpr int withTerminator = -1;
    const int count =
        ::WideCharToMultiByte(CP_OEMCP, 0, text, withTerminator, nullptr, 0, nullptr, nullptr);
    QByteArray bytes(count, '\0');
    ::WideCharToMultiByte(CP_OEMCP, 0, text, withTerminator, bytes.data(), count, nullptr, nullptr);
    bytes.chop(1);
    return bytes;
}

} // namespace

bool SDMMNotificationClient::registerCallback(ComPtr<IMMDeviceEnumerator> enumerator)
{
    unregisterCallback();
    m_enumerator = std::move(enumerator);
    return SUCCEEDED(m_enumerator->RegisterEndpointNotificationCallback(this));
}

void SDMMNotificationClient::unregisterCallback()
{
    if (m_enumerator)
        m_enumerator->UnregisterEndpointNotificationCallback(this);
}

HRESULT SDMMNotificationClient::QueryInterface(REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IMMNotificationClient)) {
        *object = static_cast<IMMNotificationClient*>(this);
        AddRef();
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG SDMMNotificationClient::AddRef()
{
    return static_cast<ULONG>(::InterlockedIncrement(&m_references));
}

ULONG SDMMNotificationClient::Release()
{
    const LONG left = ::InterlockedDecrement(&m_references);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT SDMMNotificationClient::OnDeviceStateChanged(LPCWSTR id, DWORD)
{
    _PrintDeviceName(id);
    return S_OK;
}

HRESULT SDMMNotificationClient::OnDeviceAdded(LPCWSTR id)
{
    _PrintDeviceName(id);
    return S_OK;
}

HRESULT SDMMNotificationClient::OnDeviceRemoved(LPCWSTR id)
{
    _PrintDeviceName(id);
    return S_OK;
}

HRESULT SDMMNotificationClient::OnDefaultDeviceChanged(EDataFlow, ERole, LPCWSTR id)
{
    _PrintDeviceName(id);
    return S_OK;
}

HRESULT SDMMNotificationClient::OnPropertyValueChanged(LPCWSTR id, const PROPERTYKEY)
{
    _PrintDeviceName(id);
    return S_OK;
}

long SDMMNotificationClient::_PrintDeviceName(const wchar_t* id)
{
    const ComApartment com;
    ComPtr<IMMDeviceEnumerator> enumerator = m_enumerator;
    HRESULT result = S_OK;
    if (!enumerator)
        result = ::CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_SERVER,
                                    __uuidof(IMMDeviceEnumerator), enumerator.putVoid());
    // The id is null when there is no default endpoint any more.
    ComPtr<IMMDevice> device;
    ComPtr<IPropertyStore> properties;
    PropertyValue name;
    if (SUCCEEDED(result))
        result = id ? enumerator->GetDevice(id, device.put()) : E_POINTER;
    if (SUCCEEDED(result))
        result = device->OpenPropertyStore(STGM_READ, properties.put());
    if (SUCCEEDED(result))
        result = properties->GetValue(kFriendlyName, name.put());

    qCDebug(hotplugLog) << "SDMMNotificationClient::_PrintDeviceID" << consoleText(id);
    qCDebug(hotplugLog) << "SDMMNotificationClient::_PrintDeviceName" << consoleText(name.text());
    return result;
}
