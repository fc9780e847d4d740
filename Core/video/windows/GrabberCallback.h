#pragma once

#include <qedit.h>

class SampleGrabberCallback;

/// The COM face of SampleGrabberCallback: what the sample grabber of a graph calls. It belongs to
/// the graph's owner, so counting references keeps nothing alive.
class GrabberCallback final : public ISampleGrabberCB
{
public:
    /// @p receiver, which may be null, outlives this object.
    void setReceiver(SampleGrabberCallback* receiver) { m_receiver = receiver; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    /// Not implemented: frames are taken by their buffers.
    HRESULT STDMETHODCALLTYPE SampleCB(double sampleTime, IMediaSample* sample) override;
    /// Called on the streaming thread.
    /// @return E_POINTER for a null buffer
    HRESULT STDMETHODCALLTYPE BufferCB(double sampleTime, BYTE* buffer, LONG length) override;

private:
    SampleGrabberCallback* m_receiver = nullptr;
};
