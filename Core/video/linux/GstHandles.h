#pragma once

#include <gst/gst.h>
#include <memory>

struct GstDeleter
{
    void operator()(GstElement* p) const { gst_object_unref(p); }
    void operator()(GstBus* p) const { gst_object_unref(p); }
    void operator()(GstPad* p) const { gst_object_unref(p); }
    void operator()(GstCaps* p) const { gst_caps_unref(p); }
    void operator()(GstSample* p) const { gst_sample_unref(p); }
    void operator()(GError* p) const { g_error_free(p); }
};

using GstElementPtr = std::unique_ptr<GstElement, GstDeleter>;
using GstBusPtr = std::unique_ptr<GstBus, GstDeleter>;
using GstPadPtr = std::unique_ptr<GstPad, GstDeleter>;
using GstCapsPtr = std::unique_ptr<GstCaps, GstDeleter>;
using GstSamplePtr = std::unique_ptr<GstSample, GstDeleter>;
using GErrorPtr = std::unique_ptr<GError, GstDeleter>;

/// A sample whose memory is mapped for reading as long as this object lives.
class MappedSample
{
public:
    explicit MappedSample(GstSamplePtr sample)
        : m_sample(std::move(sample))
        , m_buffer(gst_sample_get_buffer(m_sample.get()))
    {
        m_mapped = m_buffer && gst_buffer_map(m_buffer, &m_map, GST_MAP_READ);
    }
    ~MappedSample()
    {
        if (m_mapped)
            gst_buffer_unmap(m_buffer, &m_map);
    }
    MappedSample(const MappedSample&) = delete;
    MappedSample& operator=(const MappedSample&) = delete;

    [[nodiscard]] const unsigned char* data() const { return m_mapped ? m_map.data : nullptr; }
    [[nodiscard]] std::size_t size() const { return m_mapped ? m_map.size : 0; }
    /// Presentation time in seconds.
    [[nodiscard]] double time() const
    {
        return m_buffer ? static_cast<double>(GST_BUFFER_PTS(m_buffer)) / GST_SECOND : 0.0;
    }

private:
    GstSamplePtr m_sample;
    GstBuffer* m_buffer;
    GstMapInfo m_map{};
    bool m_mapped = false;
};
