#pragma once

#include "CameraScript.h"
#include "ComObject.h"
#include "windows/ComPtr.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <strmif.h>
#include <thread>

// After strmif.h, whose types they use.
#include <ks.h>
#include <ksproxy.h>

class CameraFilter;

/// An output pin of the software camera: offers the script's formats and delivers its picture
/// thirty times a second. It exists as long as its filter and shares its reference count.
class CameraPin final : public ComObject<IPin, IKsPropertySet>
{
public:
    CameraPin(CameraFilter& filter, const GUID& category, std::wstring name);
    ~CameraPin() override;

    [[nodiscard]] const std::wstring& name() const { return m_name; }
    HRESULT startStream();
    void stopStream();

    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE Connect(IPin* peer, const AM_MEDIA_TYPE* wanted) override;
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* peer, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** peer) override;
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
    HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override;
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** types) override;
    HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin** pins, ULONG* count) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop,
                                         double rate) override;

    // The only property is the pin's category, by which a graph builder finds the pin.
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                                  LPVOID data, DWORD bytes) override;
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                                  LPVOID data, DWORD bytes, DWORD* written) override;
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override;

private:
    HRESULT tryType(IPin* peer, const AM_MEDIA_TYPE& type);
    HRESULT agreeOnMemory();
    [[nodiscard]] bool offers(const AM_MEDIA_TYPE& type) const;
    void stream();
    void deliver();

    CameraFilter& m_filter;
    GUID m_category;
    std::wstring m_name;

    ComPtr<IPin> m_peer;
    ComPtr<IMemInputPin> m_input;
    ComPtr<IMemAllocator> m_memory;
    AM_MEDIA_TYPE m_type{};

    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_ending = false;
};
