#include "CameraPin.h"

#include "CameraFilter.h"
#include "ComList.h"

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <uuids.h>
#include <vfwmsgs.h>

namespace {

constexpr std::chrono::microseconds kFrameTime{33333};
constexpr long kBuffers = 4;

/// Owns the listed types.
struct OwnedType
{
    std::shared_ptr<AM_MEDIA_TYPE> type;
};

AM_MEDIA_TYPE* handOut(const OwnedType& owned)
{
    return PictureFormat::copyMediaType(*owned.type);
}

using TypeList = ComList<IEnumMediaTypes, OwnedType, AM_MEDIA_TYPE*, handOut>;

std::vector<OwnedType> typesOf(const CameraScript& script)
{
    std::vector<OwnedType> types;
    for (const GUID& subtype : script.subtypes)
        types.push_back({{PictureFormat::makeMediaType(subtype, script.size, script.topDown),
                          PictureFormat::deleteMediaType}});
    return types;
}

bool isAny(const GUID& id)
{
    return id == GUID_NULL;
}

} // namespace

CameraPin::CameraPin(CameraFilter& filter, const GUID& category, std::wstring name)
    : m_filter(filter)
    , m_category(category)
    , m_name(std::move(name))
{
}

CameraPin::~CameraPin()
{
    stopStream();
    PictureFormat::clearMediaType(m_type);
}

ULONG CameraPin::AddRef()
{
    return m_filter.AddRef();
}

ULONG CameraPin::Release()
{
    return m_filter.Release();
}

bool CameraPin::offers(const AM_MEDIA_TYPE& type) const
{
    const auto types = typesOf(m_filter.script());
    return std::any_of(types.begin(), types.end(), [&type](const OwnedType& owned) {
        return owned.type->majortype == type.majortype && owned.type->subtype == type.subtype &&
               type.formattype == FORMAT_VideoInfo;
    });
}

HRESULT CameraPin::Connect(IPin* peer, const AM_MEDIA_TYPE* wanted)
{
    if (m_peer)
        return VFW_E_ALREADY_CONNECTED;
    HRESULT result = VFW_E_NO_ACCEPTABLE_TYPES;
    for (const OwnedType& owned : typesOf(m_filter.script())) {
        if (wanted && ((!isAny(wanted->majortype) && wanted->majortype != owned.type->majortype) ||
                       (!isAny(wanted->subtype) && wanted->subtype != owned.type->subtype)))
            continue;
        result = tryType(peer, *owned.type);
        if (SUCCEEDED(result))
            return result;
    }
    return result;
}

HRESULT CameraPin::tryType(IPin* peer, const AM_MEDIA_TYPE& type)
{
    const HRESULT received = peer->ReceiveConnection(this, &type);
    if (FAILED(received))
        return received;
    peer->AddRef();
    m_peer = ComPtr<IPin>(peer);
    m_input = m_peer.query<IMemInputPin>();
    AM_MEDIA_TYPE* copy = PictureFormat::copyMediaType(type);
    m_type = *copy;
    ::CoTaskMemFree(copy);
    const HRESULT agreed = m_input ? agreeOnMemory() : VFW_E_NO_TRANSPORT;
    if (FAILED(agreed)) {
        peer->Disconnect();
        Disconnect();
        return agreed;
    }
    m_filter.script().noteConnection(type.subtype);
    return S_OK;
}

HRESULT CameraPin::agreeOnMemory()
{
    if (FAILED(m_input->GetAllocator(m_memory.put())) &&
        FAILED(::CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER,
                                  __uuidof(IMemAllocator), m_memory.putVoid())))
        return VFW_E_NO_ALLOCATOR;
    ALLOCATOR_PROPERTIES wanted{};
    wanted.cBuffers = kBuffers;
    wanted.cbBuffer = static_cast<long>(m_type.lSampleSize);
    wanted.cbAlign = 1;
    ALLOCATOR_PROPERTIES actual{};
    const HRESULT set = m_memory->SetProperties(&wanted, &actual);
    return FAILED(set) ? set : m_input->NotifyAllocator(m_memory.get(), FALSE);
}

HRESULT CameraPin::ReceiveConnection(IPin*, const AM_MEDIA_TYPE*)
{
    return E_UNEXPECTED;
}

HRESULT CameraPin::Disconnect()
{
    if (!m_peer)
        return S_FALSE;
    stopStream();
    m_memory.reset();
    m_input.reset();
    m_peer.reset();
    PictureFormat::clearMediaType(m_type);
    return S_OK;
}

HRESULT CameraPin::ConnectedTo(IPin** peer)
{
    *peer = m_peer.get();
    if (!m_peer)
        return VFW_E_NOT_CONNECTED;
    m_peer->AddRef();
    return S_OK;
}

HRESULT CameraPin::ConnectionMediaType(AM_MEDIA_TYPE* type)
{
    if (!m_peer) {
        *type = {};
        return VFW_E_NOT_CONNECTED;
    }
    AM_MEDIA_TYPE* copy = PictureFormat::copyMediaType(m_type);
    *type = *copy;
    ::CoTaskMemFree(copy);
    return S_OK;
}

HRESULT CameraPin::QueryPinInfo(PIN_INFO* info)
{
    *info = {};
    info->pFilter = &m_filter;
    m_filter.AddRef();
    info->dir = PINDIR_OUTPUT;
    m_name.copy(info->achName, MAX_PIN_NAME - 1);
    return S_OK;
}

HRESULT CameraPin::QueryDirection(PIN_DIRECTION* direction)
{
    *direction = PINDIR_OUTPUT;
    return S_OK;
}

HRESULT CameraPin::QueryId(LPWSTR* id)
{
    const std::size_t bytes = (m_name.size() + 1) * sizeof(wchar_t);
    *id = static_cast<LPWSTR>(::CoTaskMemAlloc(bytes));
    if (!*id)
        return E_OUTOFMEMORY;
    std::wmemcpy(*id, m_name.c_str(), m_name.size() + 1);
    return S_OK;
}

HRESULT CameraPin::QueryAccept(const AM_MEDIA_TYPE* type)
{
    return offers(*type) ? S_OK : S_FALSE;
}

HRESULT CameraPin::EnumMediaTypes(IEnumMediaTypes** types)
{
    *types = new TypeList(typesOf(m_filter.script()));
    return S_OK;
}

HRESULT CameraPin::QueryInternalConnections(IPin**, ULONG*)
{
    return E_NOTIMPL;
}

HRESULT CameraPin::EndOfStream()
{
    return E_UNEXPECTED;
}

HRESULT CameraPin::BeginFlush()
{
    return E_UNEXPECTED;
}

HRESULT CameraPin::EndFlush()
{
    return E_UNEXPECTED;
}

HRESULT CameraPin::NewSegment(REFERENCE_TIME, REFERENCE_TIME, double)
{
    return E_UNEXPECTED;
}

HRESULT CameraPin::Set(REFGUID, DWORD, LPVOID, DWORD, LPVOID, DWORD)
{
    return E_NOTIMPL;
}

HRESULT CameraPin::Get(REFGUID set, DWORD id, LPVOID, DWORD, LPVOID data, DWORD bytes,
                       DWORD* written)
{
    if (set != AMPROPSETID_Pin)
        return E_PROP_SET_UNSUPPORTED;
    if (id != AMPROPERTY_PIN_CATEGORY)
        return E_PROP_ID_UNSUPPORTED;
    if (written)
        *written = sizeof m_category;
    if (!data)
        return S_OK;
    if (bytes < sizeof m_category)
        return E_UNEXPECTED;
    *static_cast<GUID*>(data) = m_category;
    return S_OK;
}

HRESULT CameraPin::QuerySupported(REFGUID set, DWORD id, DWORD* support)
{
    if (set != AMPROPSETID_Pin)
        return E_PROP_SET_UNSUPPORTED;
    if (id != AMPROPERTY_PIN_CATEGORY)
        return E_PROP_ID_UNSUPPORTED;
    if (support)
        *support = KSPROPERTY_SUPPORT_GET;
    return S_OK;
}

HRESULT CameraPin::startStream()
{
    if (!m_peer || m_thread.joinable())
        return S_OK;
    const HRESULT committed = m_memory->Commit();
    if (FAILED(committed))
        return committed;
    m_ending = false;
    m_thread = std::thread(&CameraPin::stream, this);
    return S_OK;
}

void CameraPin::stopStream()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    m_memory->Decommit(); // ends a wait for a free buffer
    m_thread.join();
}

void CameraPin::stream()
{
    ++m_filter.script().streamsAlive;
    auto next = std::chrono::steady_clock::now();
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_changed.wait_until(lock, next, [this] { return m_ending; })) {
        next += kFrameTime;
        lock.unlock();
        deliver();
        lock.lock();
    }
    --m_filter.script().streamsAlive;
}

void CameraPin::deliver()
{
    ComPtr<IMediaSample> sample;
    if (FAILED(m_memory->GetBuffer(sample.put(), nullptr, nullptr, 0)))
        return;
    BYTE* bytes = nullptr;
    const CameraScript& script = m_filter.script();
    const long length = PictureFormat::frameBytes(m_type.subtype, script.size);
    if (FAILED(sample->GetPointer(&bytes)) || sample->GetSize() < length)
        return;
    PictureFormat::paint(bytes, m_type.subtype, script.size, script.topDown);
    sample->SetActualDataLength(length);
    sample->SetSyncPoint(TRUE);
    sample->SetTime(nullptr,
                    nullptr); // without time stamps: shown on arrival, like every live preview
    if (m_input->Receive(sample.get()) == S_OK)
        ++m_filter.script().framesTaken;
}
