#pragma once

#include "PluggedCamera.h"

#include <optional>
#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// A virtual camera with firmware 1.0.5 that restarts quickly, and images to write to it.
class FirmwareCamera
{
public:
    static constexpr const char* kOldVersion = "1.0.5";
    static constexpr const char* kNewVersion = "1.0.6";

    FirmwareCamera();
    ~FirmwareCamera();
    FirmwareCamera(const FirmwareCamera&) = delete;
    FirmwareCamera& operator=(const FirmwareCamera&) = delete;

    /// An intact image of version 1.0.6 whose packets all differ. When @p size is too small for an
    /// image: bytes that the camera accepts but does not run.
    [[nodiscard]] static QByteArray image(int size);
    /// @return the path of a new file with these bytes; empty when it cannot be written
    [[nodiscard]] QString file(const QByteArray& content) const;

    /// Opens the camera as the program does, writes the file to it and closes it.
    /// @return the result of UVCCamera::updateFile()
    [[nodiscard]] bool write(const QString& file);

    PluggedCamera& operator*() { return m_camera; }
    PluggedCamera* operator->() { return &m_camera; }

    /// How many requests of this kind have reached the camera; of all kinds without an argument.
    [[nodiscard]] int requests(int command);
    [[nodiscard]] int requests();
    /// The received bytes, from the camera's log; empty when the camera's own size or checksum
    /// differs.
    [[nodiscard]] std::optional<QByteArray> received();
    /// Whether the last packet has arrived too.
    [[nodiscard]] bool hasAll() { return m_camera.firmware().complete; }
    /// Whether it has executed the end command; false when it was unplugged at that command.
    [[nodiscard]] bool wasToldTheEnd();
    /// Whether it restarts by itself, as it does after the end command.
    [[nodiscard]] bool startsAnew();
    /// The version that runs after a power cycle with all faults cleared. A restarting camera must
    /// have returned before.
    [[nodiscard]] QString versionAfterRestart();

private:
    PluggedCamera m_camera;
    QTemporaryDir m_directory;
};
