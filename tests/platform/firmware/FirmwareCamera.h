#pragma once

#include "PluggedCamera.h"

#include <optional>
#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// A virtual camera with firmware 1.0.5 that is quick to start anew, and images to write into it.
class FirmwareCamera
{
public:
    static constexpr const char* kOldVersion = "1.0.5";
    static constexpr const char* kNewVersion = "1.0.6";

    FirmwareCamera();
    ~FirmwareCamera();
    FirmwareCamera(const FirmwareCamera&) = delete;
    FirmwareCamera& operator=(const FirmwareCamera&) = delete;

    /// Bytes of which no two packets are alike: an intact image of version 1.0.6, or, when @p size
    /// is too small for one, what the camera takes but does not start.
    [[nodiscard]] static QByteArray image(int size);
    /// @return the path of a new file with these bytes; empty when it cannot be written
    [[nodiscard]] QString file(const QByteArray& content) const;

    /// Opens the camera as the program does, writes the file into it and closes it.
    /// @return what UVCCamera::updateFile() says
    [[nodiscard]] bool write(const QString& file);

    PluggedCamera& operator*() { return m_camera; }
    PluggedCamera* operator->() { return &m_camera; }

    /// How many requests of this kind have reached the camera; of any kind without one.
    [[nodiscard]] int requests(int command);
    [[nodiscard]] int requests();
    /// The bytes that the camera has taken, put together from its log; nothing when the camera
    /// counts or sums up others.
    [[nodiscard]] std::optional<QByteArray> received();
    /// Whether the last packet has come, too.
    [[nodiscard]] bool hasAll() { return m_camera.firmware().complete; }
    /// Whether it has carried the end command out; not for one that was pulled at it.
    [[nodiscard]] bool wasToldTheEnd();
    /// Whether it starts anew by itself, as it does when it was told the end of the image.
    [[nodiscard]] bool startsAnew();
    /// The version that runs after the camera was without power, and its faults are over. One that
    /// starts anew has to have done so before.
    [[nodiscard]] QString versionAfterRestart();

private:
    PluggedCamera m_camera;
    QTemporaryDir m_directory;
};
