#include "UsbDescriptors.h"

#include "ByteWriter.h"
#include "core/ReportDescriptor.h"

#include <algorithm>
#include <QString>

namespace virtualcamera {

namespace {

// Descriptor types.
constexpr unsigned kDevice = 1;
constexpr unsigned kConfiguration = 2;
constexpr unsigned kString = 3;
constexpr unsigned kInterface = 4;
constexpr unsigned kEndpoint = 5;
constexpr unsigned kAssociation = 11;
constexpr unsigned kHid = 0x21;
constexpr unsigned kHidReport = 0x22;
constexpr unsigned kClassInterface = 0x24;

// Subtypes of descriptors of the type kClassInterface.
constexpr unsigned kControlHeader = 1;
constexpr unsigned kInputTerminal = 2;
constexpr unsigned kOutputTerminal = 3;
constexpr unsigned kProcessingUnit = 5;
constexpr unsigned kInputHeader = 1;
constexpr unsigned kFormatUncompressed = 4;
constexpr unsigned kFrameUncompressed = 5;
constexpr unsigned kFormatMjpeg = 6;
constexpr unsigned kFrameMjpeg = 7;
constexpr unsigned kColorFormat = 13;

constexpr unsigned kVideoClass = 0x0E;
constexpr InterfaceClass kControlInterface{kVideoClass, 1, 0};
constexpr InterfaceClass kStreamingInterface{kVideoClass, 2, 0};
constexpr InterfaceClass kHidClass{3, 0, 0};

constexpr std::uint8_t kIn = 0x80;
constexpr unsigned kInterrupt = 3;
constexpr unsigned kIsochronousAsynchronous = 5;
constexpr unsigned kVideoVersion = 0x0110;

Bytes interface(unsigned number, unsigned alternate, unsigned endpoints, const InterfaceClass& kind)
{
    // Interfaces have no names: Linux would append them to the product's name.
    return ByteWriter()
        .bytes({9, kInterface, number, alternate, endpoints, kind.code, kind.subclass,
                kind.protocol, 0})
        .take();
}

Bytes endpointDescriptor(unsigned address, unsigned attributes, unsigned packetSize,
                         unsigned interval)
{
    return ByteWriter()
        .bytes({7, kEndpoint, address, attributes})
        .word(packetSize)
        .byte(interval)
        .take();
}

std::uint32_t bitRate(const StreamMode& mode, std::uint32_t rate)
{
    const std::uint64_t bits = std::uint64_t{StreamModes::frameSize(mode)} * 8 * rate;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(bits, UINT32_MAX));
}

Bytes frameDescriptor(const StreamMode& mode, unsigned subtype, unsigned index)
{
    const auto count = static_cast<unsigned>(mode.rates.size());
    ByteWriter frame;
    frame.bytes({26 + 4 * count, kClassInterface, subtype, index, 0});
    frame.word(mode.width).word(mode.height);
    frame.doubleWord(bitRate(mode, mode.rates.back()));
    frame.doubleWord(bitRate(mode, mode.rates.front()));
    frame.doubleWord(StreamModes::frameSize(mode));
    frame.doubleWord(StreamModes::intervalOf(mode.rates.front()));
    frame.byte(count);
    for (const std::uint32_t rate : mode.rates)
        frame.doubleWord(StreamModes::intervalOf(rate));
    return frame.take();
}

Bytes formatDescriptors(const StreamFormat& format, unsigned index)
{
    const auto frames = static_cast<unsigned>(format.modes.size());
    ByteWriter all;
    if (format.compressed) {
        all.bytes({11, kClassInterface, kFormatMjpeg, index, frames, 0, 1, 0, 0, 0, 0});
    } else {
        all.bytes({27, kClassInterface, kFormatUncompressed, index, frames});
        all.bytes({'Y', 'U', 'Y', '2', 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71});
        all.bytes({16, 1, 0, 0, 0, 0}); // bits per pixel, default frame
    }
    const unsigned subtype = format.compressed ? kFrameMjpeg : kFrameUncompressed;
    for (unsigned i = 0; i < frames; ++i)
        all.append(frameDescriptor(format.modes[i], subtype, i + 1));
    all.bytes({6, kClassInterface, kColorFormat, 1, 1, 4}); // BT.709, BT.709, BT.601
    return all.take();
}

} // namespace

const std::vector<ProcessingControl>& processingControls()
{
    static const std::vector<ProcessingControl> controls{{Control::Brightness, 2, 0},
                                                         {Control::Contrast, 3, 1},
                                                         {Control::Saturation, 7, 3},
                                                         {Control::Sharpness, 8, 4}};
    return controls;
}

UsbDescriptors::UsbDescriptors(const CameraSpec& spec)
    : m_strings{spec.identity.manufacturer, spec.identity.product, spec.identity.usbSerial}
    , m_device(makeDevice(spec.identity))
    , m_configuration(makeConfiguration(spec))
{
}

std::optional<Bytes> UsbDescriptors::string(std::uint8_t index) const
{
    if (index == 0) // the languages: English (United States)
        return Bytes{4, kString, 0x09, 0x04};
    if (index > m_strings.size() || m_strings[index - 1U].empty())
        return std::nullopt;
    const QString text = QString::fromStdString(m_strings[index - 1U]);
    ByteWriter descriptor;
    descriptor.byte(static_cast<unsigned>(2 + 2 * text.size())).byte(kString);
    for (const QChar unit : text)
        descriptor.word(unit.unicode());
    return descriptor.take();
}

Bytes UsbDescriptors::makeDevice(const CameraIdentity& identity) const
{
    const auto nameOf = [this](std::size_t index) {
        return m_strings[index - 1].empty() ? 0U : static_cast<unsigned>(index);
    };
    ByteWriter device;
    device.bytes({18, kDevice}).word(0x0200);
    device.bytes({kDeviceClass.code, kDeviceClass.subclass, kDeviceClass.protocol, 64});
    device.word(identity.vendorId).word(identity.productId).word(kDeviceVersion);
    device.bytes({nameOf(1), nameOf(2), nameOf(3), 1});
    return device.take();
}

Bytes UsbDescriptors::makeConfiguration(const CameraSpec& spec)
{
    ByteWriter body;
    if (spec.hasVideo)
        body.append(makeVideoControl(spec)).append(makeVideoStreaming(StreamModes(spec.modes)));
    if (spec.hasHid)
        body.append(makeHidInterface());
    const Bytes interfaces = body.take();
    ByteWriter all;
    all.bytes({9, kConfiguration}).word(static_cast<unsigned>(9 + interfaces.size()));
    all.bytes({static_cast<unsigned>(m_interfaces.size()), 1, 0, 0x80, 250}); // 500 mA from the bus
    return all.append(interfaces).take();
}

Bytes UsbDescriptors::makeVideoControl(const CameraSpec& spec)
{
    m_videoControl = addInterface(kControlInterface);
    ByteWriter entities;
    entities.bytes({17, kClassInterface, kInputTerminal, entity::kCameraTerminal});
    entities.word(0x0201).bytes({0, 0}).word(0).word(0).word(0).bytes({2, 0, 0});
    if (spec.hasAmplifier) {
        unsigned controls = 0;
        for (const ProcessingControl& control : processingControls())
            controls |= 1U << control.bit;
        entities.bytes({12, kClassInterface, kProcessingUnit, entity::kProcessingUnit,
                        entity::kCameraTerminal});
        entities.word(0).byte(2).word(controls).bytes({0, 0});
    }
    entities.bytes({9, kClassInterface, kOutputTerminal, entity::kOutputTerminal});
    entities.word(0x0101).bytes(
        {0, spec.hasAmplifier ? entity::kProcessingUnit : entity::kCameraTerminal, 0});
    const Bytes described = entities.take();

    const unsigned streaming = *m_videoControl + 1U;
    ByteWriter all;
    all.bytes({8, kAssociation, *m_videoControl, 2, kVideoClass, 3, 0, 0});
    all.append(interface(*m_videoControl, 0, 0, kControlInterface));
    all.bytes({13, kClassInterface, kControlHeader}).word(kVideoVersion);
    all.word(static_cast<unsigned>(13 + described.size())).doubleWord(48'000'000);
    all.bytes({1, streaming});
    return all.append(described).take();
}

Bytes UsbDescriptors::makeVideoStreaming(const StreamModes& modes)
{
    m_videoStreaming = addInterface(kStreamingInterface);
    ByteWriter formats;
    unsigned index = 0;
    for (const StreamFormat& format : modes.formats())
        formats.append(formatDescriptors(format, ++index));
    const Bytes described = formats.take();

    const unsigned headerSize = 13 + index;
    ByteWriter all;
    all.append(interface(*m_videoStreaming, 0, 0, kStreamingInterface));
    all.bytes({headerSize, kClassInterface, kInputHeader, index});
    all.word(static_cast<unsigned>(headerSize + described.size()));
    all.bytes({kIn | endpoint::kVideoIn, 0, entity::kOutputTerminal, 0, 0, 0, 1});
    for (unsigned i = 0; i < index; ++i)
        all.byte(0);
    all.append(described);
    all.append(interface(*m_videoStreaming, 1, 1, kStreamingInterface));
    constexpr unsigned transactions = StreamModes::kPacketSize / 1024;
    all.append(endpointDescriptor(kIn | endpoint::kVideoIn, kIsochronousAsynchronous,
                                  1024U | ((transactions - 1) << 11U), 1));
    return all.take();
}

Bytes UsbDescriptors::makeHidInterface()
{
    m_hidInterface = addInterface(kHidClass);
    m_hid = ByteWriter()
                .bytes({9, kHid})
                .word(0x0111)
                .bytes({0, 1, kHidReport})
                .word(static_cast<unsigned>(reportDescriptor().size()))
                .take();
    ByteWriter all;
    all.append(interface(*m_hidInterface, 0, 2, kHidClass)).append(m_hid);
    // A report is one packet; every eighth microframe is enough.
    all.append(endpointDescriptor(kIn | endpoint::kHidIn, kInterrupt, kReportSize, 4));
    all.append(endpointDescriptor(endpoint::kHidOut, kInterrupt, kReportSize, 4));
    return all.take();
}

std::uint8_t UsbDescriptors::addInterface(const InterfaceClass& interfaceClass)
{
    m_interfaces.push_back(interfaceClass);
    return static_cast<std::uint8_t>(m_interfaces.size() - 1);
}

} // namespace virtualcamera
