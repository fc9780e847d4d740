#include "FirmwareCamera.h"

#include "core/Checksum.h"
#include "core/DeviceFirmware.h"
#include "HidCommands.h"
#include "UVCCamera.h"

#include <algorithm>
#include <QFile>
#include <random>

namespace {

constexpr int kImageHeader = 10;

std::uint16_t checksumOf(const QByteArray& bytes)
{
    return virtualcamera::checksum(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                   static_cast<std::size_t>(bytes.size()));
}

} // namespace

// When a camera leaves, unread answers are lost: this gives a busy machine the time to read them.
FirmwareCamera::FirmwareCamera()
    : m_camera({{"firmware", kOldVersion}, {"dropdelay", "250"}, {"returndelay", "30"}})
{
}

FirmwareCamera::~FirmwareCamera() = default;

QByteArray FirmwareCamera::image(int size)
{
    std::mt19937 random(static_cast<std::mt19937::result_type>(size));
    virtualcamera::DeviceFirmware image;
    image.version = {1, 0, 6};
    image.payload.resize(static_cast<std::size_t>(std::max(size - kImageHeader, 0)));
    std::generate(image.payload.begin(), image.payload.end(),
                  [&random] { return static_cast<std::uint8_t>(random()); });
    const virtualcamera::Bytes bytes = image.encode();
    return {reinterpret_cast<const char*>(bytes.data()), std::min(size, int(bytes.size()))};
}

QString FirmwareCamera::file(const QByteArray& content) const
{
    QFile file(m_directory.filePath(QStringLiteral("firmware.bin")));
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    return written ? file.fileName() : QString();
}

bool FirmwareCamera::write(const QString& file)
{
    UVCCamera program;
    program.setCurrentDevicePath(m_camera.hidPath());
    return program.initHid() && program.updateFile(file);
}

int FirmwareCamera::requests(int command)
{
    const auto entries = m_camera.requests();
    return static_cast<int>(
        std::count_if(entries.begin(), entries.end(),
                      [command](const auto& entry) { return entry.command == command; }));
}

int FirmwareCamera::requests()
{
    return static_cast<int>(m_camera.requestCount());
}

std::optional<QByteArray> FirmwareCamera::received()
{
    const PluggedCamera::Client::Firmware taken = m_camera.firmware();
    QByteArray bytes;
    std::uint32_t last = 0;
    for (const auto& entry : m_camera.requests()) {
        if (entry.command != HidCommands::FirmwarePacket || entry.verdict != "ok" ||
            entry.packNumber != last + 1 || last == taken.packets)
            continue;
        last = entry.packNumber;
        bytes.append(reinterpret_cast<const char*>(entry.payload.data()),
                     static_cast<int>(entry.payload.size()));
    }
    const bool same = static_cast<std::uint64_t>(bytes.size()) == taken.size &&
                      checksumOf(bytes) == taken.checksum;
    return same ? std::optional<QByteArray>(bytes) : std::nullopt;
}

bool FirmwareCamera::wasToldTheEnd()
{
    const auto entries = m_camera.requests();
    return std::any_of(entries.begin(), entries.end(), [](const auto& entry) {
        return entry.command == HidCommands::FirmwareEnd && entry.verdict == "ok";
    });
}

bool FirmwareCamera::startsAnew()
{
    return m_camera.waitFor("connections>=2") && m_camera.waitFor("onbus");
}

QString FirmwareCamera::versionAfterRestart()
{
    if (m_camera.stats().onBus)
        m_camera.unplug();
    m_camera.clearFaults();
    m_camera.plug();
    return QString::fromStdString(m_camera.firmware().version);
}
