#include "GrabberCallback.h"

#include "../SampleGrabberCallback.h"

HRESULT GrabberCallback::QueryInterface(REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(ISampleGrabberCB)) {
        *object = static_cast<ISampleGrabberCB*>(this);
        return S_OK;
    }
    *object = nullptr;
    return E_NOTIMPL;
}

// Fixed counts: a grabber only needs the callback to be there, and neither answer is the zero that
// stands for an object that is gone.
ULONG GrabberCallback::AddRef()
{
    return 1;
}

ULONG GrabberCallback::Release()
{
    return 2;
}

HRESULT GrabberCallback::SampleCB(double, IMediaSample*)
{
    return E_NOTIMPL;
}

HRESULT GrabberCallback::BufferCB(double sampleTime, BYTE* buffer, LONG length)
{
    if (!buffer)
        return E_POINTER;
    if (m_receiver)
        m_receiver->bufferCallback(sampleTime, buffer, length);
    return S_OK;
}
