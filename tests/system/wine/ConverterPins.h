#pragma once

#include "ComObject.h"
#include "PictureType.h"
#include "windows/ComPtr.h"

#include <string>
#include <strmif.h>

class ColourConverter;

/// What the two pins have in common. A pin lives as long as its filter and shares its references.
template <typename... Interfaces>
class ConverterPin : public ComObject<IPin, Interfaces...>
{
public:
    ConverterPin(ColourConverter& filter, PIN_DIRECTION direction, std::wstring name);

    [[nodiscard]] const std::wstring& name() const { return m_name; }
    [[nodiscard]] const PictureType& type() const { return m_type; }
    [[nodiscard]] IPin* peer() const { return m_peer.get(); }

    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** peer) override;
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
    HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override;
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
    HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin** pins, ULONG* count) override;

protected:
    void connect(IPin* peer, const PictureType& type);
    [[nodiscard]] ColourConverter& filter() const { return m_filter; }

private:
    ColourConverter& m_filter;
    PIN_DIRECTION m_direction;
    std::wstring m_name;
    ComPtr<IPin> m_peer;
    PictureType m_type;
};

class InputPin final : public ConverterPin<IMemInputPin>
{
public:
    explicit InputPin(ColourConverter& filter);

    HRESULT STDMETHODCALLTYPE Connect(IPin* peer, const AM_MEDIA_TYPE* wanted) override;
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* peer, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** types) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop,
                                         double rate) override;

    HRESULT STDMETHODCALLTYPE GetAllocator(IMemAllocator** memory) override;
    HRESULT STDMETHODCALLTYPE NotifyAllocator(IMemAllocator* memory, BOOL isReadOnly) override;
    HRESULT STDMETHODCALLTYPE GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE ReceiveMultiple(IMediaSample** samples, long count,
                                              long* taken) override;
    HRESULT STDMETHODCALLTYPE ReceiveCanBlock() override;
};

class OutputPin final : public ConverterPin<>
{
public:
    explicit OutputPin(ColourConverter& filter);

    HRESULT start();
    void stop();
    /// Converts a received sample and delivers it.
    HRESULT deliver(IMediaSample& picture);

    HRESULT STDMETHODCALLTYPE Connect(IPin* peer, const AM_MEDIA_TYPE* wanted) override;
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* peer, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** types) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop,
                                         double rate) override;

private:
    HRESULT agreeOnMemory();

    ComPtr<IMemInputPin> m_memoryPin;
    ComPtr<IMemAllocator> m_memory;
};
