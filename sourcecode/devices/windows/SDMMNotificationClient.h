#pragma once

#include "windows/ComApartment.h"
#include "windows/ComPtr.h"

#include <mmdeviceapi.h>

/// Logs changes of the audio endpoints. Lives until its last reference is released; the references
/// of its owner are released on the thread that made it.
class SDMMNotificationClient final : public IMMNotificationClient
{
public:
    /// With one reference, the caller's.
    SDMMNotificationClient() = default;
    SDMMNotificationClient(const SDMMNotificationClient&) = delete;
    SDMMNotificationClient& operator=(const SDMMNotificationClient&) = delete;

    /// Registers with @p enumerator and unregisters from the previous one.
    /// @return false when the audio system refuses
    bool registerCallback(ComPtr<IMMDeviceEnumerator> enumerator);
    /// When this returns, no notification is being handled and none will come.
    void unregisterCallback();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // Called on the audio system's thread.
    HRESULT STDMETHODCALLTYPE OnDeviceStateChanged(LPCWSTR id, DWORD state) override;
    HRESULT STDMETHODCALLTYPE OnDeviceAdded(LPCWSTR id) override;
    HRESULT STDMETHODCALLTYPE OnDeviceRemoved(LPCWSTR id) override;
    HRESULT STDMETHODCALLTYPE OnDefaultDeviceChanged(EDataFlow flow, ERole role,
                                                     LPCWSTR id) override;
    HRESULT STDMETHODCALLTYPE OnPropertyValueChanged(LPCWSTR id, PROPERTYKEY key) override;

    /// Logs id and friendly name of the endpoint.
    /// @return why the name could not be read; id and name are logged in any case
    // NOLINTNEXTLINE(bugprone-reserved-identifier)
    long _PrintDeviceName(const wchar_t* id);

private:
    ~SDMMNotificationClient() = default;

    LONG m_references = 1;
    ComApartment m_com; ///< declared before the enumerator, which must be released before COM ends
    ComPtr<IMMDeviceEnumerator> m_enumerator;
};
