#include "ConverterPins.h"

#include "ColourConverter.h"
#include "ComList.h"

#include <cwchar>
#include <uuids.h>
#include <vfwmsgs.h>

namespace {

constexpr long kBuffers = 4;

AM_MEDIA_TYPE* handOutType(const PictureType& type)
{
    return type.make();
}

using TypeList = ComList<IEnumMediaTypes, PictureType, AM_MEDIA_TYPE*, handOutType>;

void convert(const PictureType& from, const BYTE* source, const PictureType& to, BYTE* target)
{
    for (LONG row = 0; row < from.rows(); ++row) {
        const BYTE* pixel = source + row * from.bytesPerRow();
        BYTE* converted = target + row * to.bytesPerRow();
        for (LONG column = 0; column < from.width; ++column, pixel += 3, converted += 4) {
            converted[0] = pixel[0];
            converted[1] = pixel[1];
            converted[2] = pixel[2];
            converted[3] = 0xFF;
        }
    }
}

} // namespace

template <typename... Interfaces>
ConverterPin<Interfaces...>::ConverterPin(ColourConverter& filter, PIN_DIRECTION direction,
                                          std::wstring name)
    : m_filter(filter)
    , m_direction(direction)
    , m_name(std::move(name))
{
}

template <typename... Interfaces>
ULONG ConverterPin<Interfaces...>::AddRef()
{
    return m_filter.AddRef();
}

template <typename... Interfaces>
ULONG ConverterPin<Interfaces...>::Release()
{
    return m_filter.Release();
}

template <typename... Interfaces>
void ConverterPin<Interfaces...>::connect(IPin* peer, const PictureType& type)
{
    peer->AddRef();
    m_peer = ComPtr<IPin>(peer);
    m_type = type;
}

template <typename... Interfaces>
HRESULT ConverterPin<Interfaces...>::Disconnect()
{
    const bool isConnected = static_cast<bool>(m_peer);
    m_peer.reset();
    return isConnected ? S_OK : S_FALSE;
}

template <typename... Interfaces>
HRESULT ConverterPin<Interfaces...>::ConnectedTo(IPin** peer)
{
    *peer = m_peer.get();
    if (!m_peer)
        return VFW_E_NOT_CONNECTED;
    m_peer->AddRef();
    return S_OK;
}

template <typename... Interfaces>
HRESULT ConverterPin<Interfaces...>::ConnectionMediaType(AM_MEDIA_TYPE* type)
{
    *type = {};
    if (!m_peer)
        return VFW_E_NOT_CONNECTED;
    m_type.fill(*type);
    return S_OK;
}

template <typename... Interfaces>
HRESULT ConverterPin<Interfaces...>::QueryPinInfo(PIN_INFO* info)
{
    *info = {};
    info->pFilter = &m_filter;
    m_filter.AddRef();
    info->dir = m_direction;
    m_name.copy(info->achName, MAX_PIN_NAME - 1);
    return S_OK;
}

template <typename... Interfaces>
HRESULT ConverterPin<Interfaces...>::QueryDirection(PIN_DIRECTION* direction)
{
    *direction = m_direction;
    return S_OK;
}

template <typename... Interfaces>
HRESULT ConverterPin<Interfaces...>::QueryId(LPWSTR* id)
{
    const std::size_t length = m_name.size() + 1;
    *id = static_cast<LPWSTR>(::CoTaskMemAlloc(length * sizeof(wchar_t)));
    if (!*id)
        return E_OUTOFMEMORY;
    std::wmemcpy(*id, m_name.c_str(), length);
    return S_OK;
}

template <typename... Interfaces>
HRESULT ConverterPin<Interfaces...>::QueryInternalConnections(IPin**, ULONG*)
{
    return E_NOTIMPL;
}

InputPin::InputPin(ColourConverter& filter)
    : ConverterPin(filter, PINDIR_INPUT, L"In")
{
}

HRESULT InputPin::Connect(IPin*, const AM_MEDIA_TYPE*)
{
    return E_UNEXPECTED;
}

HRESULT InputPin::ReceiveConnection(IPin* other, const AM_MEDIA_TYPE* offered)
{
    if (peer())
        return VFW_E_ALREADY_CONNECTED;
    if (QueryAccept(offered) != S_OK)
        return VFW_E_TYPE_NOT_ACCEPTED;
    connect(other, *PictureType::of(*offered));
    return S_OK;
}

HRESULT InputPin::QueryAccept(const AM_MEDIA_TYPE* offered)
{
    const std::optional<PictureType> picture = PictureType::of(*offered);
    return picture && picture->bitsPerPixel == 24 ? S_OK : S_FALSE;
}

HRESULT InputPin::EnumMediaTypes(IEnumMediaTypes** types)
{
    *types = new TypeList({});
    return S_OK;
}

HRESULT InputPin::EndOfStream()
{
    IPin* next = filter().output().peer();
    return next ? next->EndOfStream() : S_OK;
}

HRESULT InputPin::BeginFlush()
{
    IPin* next = filter().output().peer();
    return next ? next->BeginFlush() : S_OK;
}

HRESULT InputPin::EndFlush()
{
    IPin* next = filter().output().peer();
    return next ? next->EndFlush() : S_OK;
}

HRESULT InputPin::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate)
{
    IPin* next = filter().output().peer();
    return next ? next->NewSegment(start, stop, rate) : S_OK;
}

HRESULT InputPin::GetAllocator(IMemAllocator**)
{
    return VFW_E_NO_ALLOCATOR;
}

HRESULT InputPin::NotifyAllocator(IMemAllocator*, BOOL)
{
    return S_OK;
}

HRESULT InputPin::GetAllocatorRequirements(ALLOCATOR_PROPERTIES*)
{
    return E_NOTIMPL;
}

HRESULT InputPin::Receive(IMediaSample* sample)
{
    if (filter().isStopped())
        return VFW_E_WRONG_STATE;
    return filter().output().deliver(*sample);
}

HRESULT InputPin::ReceiveMultiple(IMediaSample** samples, long count, long* taken)
{
    for (*taken = 0; *taken < count; ++*taken) {
        const HRESULT received = Receive(samples[*taken]);
        if (received != S_OK)
            return received;
    }
    return S_OK;
}

HRESULT InputPin::ReceiveCanBlock()
{
    return S_OK;
}

OutputPin::OutputPin(ColourConverter& filter)
    : ConverterPin(filter, PINDIR_OUTPUT, L"Out")
{
}

HRESULT OutputPin::start()
{
    return m_memory ? m_memory->Commit() : S_OK;
}

void OutputPin::stop()
{
    if (m_memory)
        m_memory->Decommit(); // ends a wait for a free buffer
}

HRESULT OutputPin::deliver(IMediaSample& picture)
{
    if (!m_memory || !m_memoryPin)
        return VFW_E_NOT_CONNECTED;
    const PictureType& from = filter().input().type();
    ComPtr<IMediaSample> sample;
    const HRESULT got = m_memory->GetBuffer(sample.put(), nullptr, nullptr, 0);
    if (FAILED(got))
        return got;
    BYTE* source = nullptr;
    BYTE* target = nullptr;
    if (FAILED(picture.GetPointer(&source)) || FAILED(sample->GetPointer(&target)) ||
        picture.GetActualDataLength() < from.bytes() || sample->GetSize() < type().bytes())
        return VFW_E_BUFFER_OVERFLOW;
    convert(from, source, type(), target);
    sample->SetActualDataLength(type().bytes());
    sample->SetSyncPoint(TRUE);
    REFERENCE_TIME start = 0;
    REFERENCE_TIME end = 0;
    const HRESULT timed = picture.GetTime(&start, &end);
    sample->SetTime(SUCCEEDED(timed) ? &start : nullptr, timed == S_OK ? &end : nullptr);
    return m_memoryPin->Receive(sample.get());
}

HRESULT OutputPin::Connect(IPin* other, const AM_MEDIA_TYPE* wanted)
{
    if (peer())
        return VFW_E_ALREADY_CONNECTED;
    if (!filter().input().peer())
        return VFW_E_NO_ACCEPTABLE_TYPES;
    if (wanted && wanted->subtype != GUID_NULL && wanted->subtype != MEDIASUBTYPE_RGB32)
        return VFW_E_NO_ACCEPTABLE_TYPES;
    const PictureType offered = filter().input().type().withBits(32);
    AM_MEDIA_TYPE type;
    offered.fill(type);
    const HRESULT received = other->ReceiveConnection(this, &type);
    ::CoTaskMemFree(type.pbFormat);
    if (FAILED(received))
        return received;
    connect(other, offered);
    const HRESULT agreed = agreeOnMemory();
    if (FAILED(agreed)) {
        other->Disconnect();
        Disconnect();
    }
    return agreed;
}

HRESULT OutputPin::agreeOnMemory()
{
    if (FAILED(peer()->QueryInterface(__uuidof(IMemInputPin), m_memoryPin.putVoid())))
        return VFW_E_NO_TRANSPORT;
    if (FAILED(m_memoryPin->GetAllocator(m_memory.put())) &&
        FAILED(::CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER,
                                  __uuidof(IMemAllocator), m_memory.putVoid())))
        return VFW_E_NO_ALLOCATOR;
    ALLOCATOR_PROPERTIES wanted{};
    wanted.cBuffers = kBuffers;
    wanted.cbBuffer = type().bytes();
    wanted.cbAlign = 1;
    ALLOCATOR_PROPERTIES actual{};
    const HRESULT set = m_memory->SetProperties(&wanted, &actual);
    return FAILED(set) ? set : m_memoryPin->NotifyAllocator(m_memory.get(), FALSE);
}

HRESULT OutputPin::ReceiveConnection(IPin*, const AM_MEDIA_TYPE*)
{
    return E_UNEXPECTED;
}

HRESULT OutputPin::Disconnect()
{
    stop();
    m_memory.reset();
    m_memoryPin.reset();
    return ConverterPin::Disconnect();
}

HRESULT OutputPin::QueryAccept(const AM_MEDIA_TYPE* offered)
{
    const std::optional<PictureType> picture = PictureType::of(*offered);
    return picture && picture->bitsPerPixel == 32 ? S_OK : S_FALSE;
}

HRESULT OutputPin::EnumMediaTypes(IEnumMediaTypes** types)
{
    std::vector<PictureType> offered;
    if (filter().input().peer())
        offered.push_back(filter().input().type().withBits(32));
    *types = new TypeList(std::move(offered));
    return S_OK;
}

HRESULT OutputPin::EndOfStream()
{
    return E_UNEXPECTED;
}

HRESULT OutputPin::BeginFlush()
{
    return E_UNEXPECTED;
}

HRESULT OutputPin::EndFlush()
{
    return E_UNEXPECTED;
}

HRESULT OutputPin::NewSegment(REFERENCE_TIME, REFERENCE_TIME, double)
{
    return E_UNEXPECTED;
}
