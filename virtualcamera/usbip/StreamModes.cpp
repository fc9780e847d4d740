#include "StreamModes.h"

#include "ByteWriter.h"

#include <algorithm>
#include <cstdlib>

namespace virtualcamera {

namespace {

/// Three transactions of 1024 bytes in each of 8000 microframes a second.
constexpr std::uint64_t kBytesPerSecond = std::uint64_t{StreamModes::kPacketSize} * 8000;
/// For pictures that are too large for the bus at any usual rate.
constexpr std::uint32_t kSlowestRate = 1;

std::vector<std::uint32_t> ratesOf(const PixelFormat& format, const FrameSize& size)
{
    if (format.compressed)
        return frameRates();
    const std::uint64_t frame = std::uint64_t{size.width} * size.height * 2;
    std::vector<std::uint32_t> rates;
    for (const std::uint32_t rate : {30U, 15U, 10U, 5U})
        if (frame * rate <= kBytesPerSecond)
            rates.push_back(rate);
    if (rates.empty())
        rates.push_back(kSlowestRate);
    return rates;
}

std::uint32_t distance(std::uint32_t a, std::uint32_t b)
{
    return a > b ? a - b : b - a;
}

} // namespace

StreamModes::StreamModes(const PixelFormats& formats)
{
    for (const PixelFormat& format : formats) {
        StreamFormat& added = m_formats.emplace_back();
        added.fourcc = format.fourcc;
        added.compressed = format.compressed;
        for (const FrameSize& size : format.sizes)
            added.modes.push_back({format.fourcc, size.width, size.height, ratesOf(format, size)});
    }
}

const StreamMode& StreamModes::mode(const StreamAgreement& agreement) const
{
    return m_formats.at(agreement.formatIndex - 1U).modes.at(agreement.frameIndex - 1U);
}

StreamAgreement StreamModes::agree(const StreamAgreement& wish) const
{
    StreamAgreement agreement = wish;
    if (agreement.formatIndex < 1 || agreement.formatIndex > m_formats.size())
        agreement.formatIndex = 1;
    if (agreement.frameIndex < 1 ||
        agreement.frameIndex > m_formats[agreement.formatIndex - 1U].modes.size())
        agreement.frameIndex = 1;
    const std::vector<std::uint32_t>& rates = mode(agreement).rates;
    if (wish.interval == 0) {
        agreement.interval = intervalOf(rates.front());
        return agreement;
    }
    const std::uint32_t rate =
        *std::min_element(rates.begin(), rates.end(), [&wish](std::uint32_t a, std::uint32_t b) {
            return distance(intervalOf(a), wish.interval) < distance(intervalOf(b), wish.interval);
        });
    agreement.interval = intervalOf(rate);
    return agreement;
}

StreamAgreement StreamModes::parse(const std::vector<std::uint8_t>& block) const
{
    // A UVC 1.0 host sends a shorter block; all fields that are used are in the first eight bytes.
    if (block.size() < 8)
        return agree({});
    return agree({block[2], block[3], loadLittleEndian32(&block[4])});
}

std::vector<std::uint8_t> StreamModes::encode(const StreamAgreement& agreement) const
{
    ByteWriter block;
    block.word(1); // the host chooses the interval, the camera chooses the rest
    block.byte(agreement.formatIndex).byte(agreement.frameIndex);
    block.doubleWord(agreement.interval);
    for (int i = 0; i < 5; ++i) // key frames, quality, window, delay
        block.word(0);
    block.doubleWord(frameSize(mode(agreement)));
    block.doubleWord(kPacketSize);
    block.doubleWord(48'000'000); // the device's clock
    block.bytes({3, 0, 0, 0});    // frame identifier and end of frame are in use
    return block.take();
}

} // namespace virtualcamera
