#pragma once

#include "PixelFormats.h"

#include <cstddef>
#include <vector>

namespace virtualcamera {

/// One frame descriptor: a size in a format, with its rates.
struct StreamMode
{
    std::uint32_t fourcc = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    /// Frames per second, best first; never empty.
    std::vector<std::uint32_t> rates;
};

/// A format descriptor with its frame descriptors.
struct StreamFormat
{
    std::uint32_t fourcc = 0;
    bool compressed = false;
    std::vector<StreamMode> modes;
};

/// The parameters that host and camera negotiate before a stream starts.
struct StreamAgreement
{
    /// Counted from 1.
    std::uint8_t formatIndex = 1;
    std::uint8_t frameIndex = 1;
    /// In units of 100 ns.
    std::uint32_t interval = 0;
};

/// The modes of a camera, at rates that a high-speed bus can carry.
class StreamModes
{
public:
    /// Length of the negotiation's data block, UVC 1.1.
    static constexpr std::size_t kBlockSize = 34;
    /// Bytes of one isochronous packet: three transactions of 1024 in a microframe.
    static constexpr std::uint32_t kPacketSize = 3 * 1024;

    explicit StreamModes(const PixelFormats& formats);

    const std::vector<StreamFormat>& formats() const { return m_formats; }
    const StreamMode& mode(const StreamAgreement& agreement) const;

    /// The possible agreement that is nearest to the requested one.
    StreamAgreement agree(const StreamAgreement& wish) const;
    StreamAgreement parse(const std::vector<std::uint8_t>& block) const;
    std::vector<std::uint8_t> encode(const StreamAgreement& agreement) const;

    static std::uint32_t intervalOf(std::uint32_t rate) { return 10'000'000 / rate; }
    static std::uint32_t frameSize(const StreamMode& mode) { return mode.width * mode.height * 2; }

private:
    std::vector<StreamFormat> m_formats;
};

} // namespace virtualcamera
