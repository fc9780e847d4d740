#pragma once

#include "CameraInventory.h"
#include "CameraLock.h"
#include "Register.h"
#include "Result.h"
#include "StreamFormat.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <QCoreApplication>
#include <QString>

class UVCHid;
class VideoProcAmp;
struct VideoProcAmpRecord;

/// Talks to one camera. open() is the only place where this program takes a camera for itself:
/// every exchange lies between an open() and the next close(). After the first request without an
/// answer the camera is asked nothing more until the next open(), because each such request waits
/// for seconds.
///
/// Belongs to the thread that opens it. Calls block as those of UVCHid do.
class CameraLink
{
    Q_DECLARE_TR_FUNCTIONS(CameraLink)

public:
    /// @param timeout of open(), while another program holds the camera's lock
    CameraLink(FoundCamera camera, std::chrono::milliseconds timeout);
    ~CameraLink();
    CameraLink(CameraLink&& other) noexcept;
    CameraLink& operator=(CameraLink&& other) noexcept;

    [[nodiscard]] const FoundCamera& camera() const { return m_camera; }
    [[nodiscard]] QString path() const { return m_camera.hid.path; }

    /// How long open() may wait.
    [[nodiscard]] std::chrono::milliseconds timeout() const { return m_timeout; }

    /// Takes the camera's lock and keeps it until close(); no exchange is made.
    [[nodiscard]] std::optional<Failure> open();
    void close();

    /// Whether the camera reports itself as connected.
    [[nodiscard]] std::optional<Failure> probe();
    /// Asks once and remembers the answer, also after close().
    [[nodiscard]] Result<QString> serialNumber();
    [[nodiscard]] Result<QString> firmwareVersion();
    [[nodiscard]] Result<StreamFormat> stream();
    /// The serial number if it was asked for; else empty.
    [[nodiscard]] QString knownSerialNumber() const { return m_serial.value_or(QString()); }

    [[nodiscard]] Result<int> read(const Register& id);
    /// Stops at the first register that cannot be read.
    [[nodiscard]] Result<RegisterValues> read(const Registers& ids);
    [[nodiscard]] std::optional<Failure> write(const Register& id, int value);

    /// Sends a firmware image. The camera checks it and restarts; whether it has taken the image
    /// shows its version after that. The camera is locked for the whole transfer; the link is
    /// closed.
    /// @return a failure when the camera has not acknowledged start and end
    [[nodiscard]] std::optional<Failure>
    transferFirmware(const QString& file, const std::function<void(qint64, qint64)>& onProgress);

private:
    [[nodiscard]] Result<QString> readText(int command);
    [[nodiscard]] static Failure inUse(const CameraLock::Holder& holder);
    [[nodiscard]] Failure lastFailure();
    [[nodiscard]] std::optional<Failure> openPicture();
    [[nodiscard]] Failure pictureFailure() const;
    [[nodiscard]] Result<int> readPicture(PictureProperty property);
    [[nodiscard]] std::optional<Failure> writePicture(PictureProperty property, int value);

    FoundCamera m_camera;
    std::chrono::milliseconds m_timeout;
    std::unique_ptr<UVCHid> m_hid;
    std::optional<UVCDeviceInfo> m_video;
    std::unique_ptr<VideoProcAmp> m_picture;
    std::optional<QString> m_serial;
    std::optional<Failure> m_silence; ///< why nothing more is asked
};
