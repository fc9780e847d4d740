#pragma once

#include "CameraLock.h"
#include "DeviceSettings.h"
#include "HidApi.h"
#include "HidDevices.h"
#include "HidFrame.h"

#include <chrono>
#include <functional>
#include <optional>
#include <QMap>
#include <QString>
#include <utility>

/// The control link to one camera over its vendor HID interface.
///
/// Parameter commands open the interface, do one exchange and close it again, each by itself, so
/// another program can talk to the camera between two of them. A second, persistent handle is held
/// for the firmware transfer alone.
///
/// All operations block the calling thread: a read for up to 3 s, a write for up to 1 s, and as
/// long again when another program holds the camera's lock. An exchange takes that lock, a firmware
/// transfer holds it; see CameraLock. Only the functions that touch the state of hidapi itself take
/// a lock; see HidApi. No command may be sent to a camera whose firmware is being transferred.
class UVCHid
{
public:
    UVCHid();
    ~UVCHid();
    UVCHid(const UVCHid&) = delete;
    UVCHid& operator=(const UVCHid&) = delete;

    /// Inventory of all HID interfaces of the system, of every maker, keyed by path. Entries
    /// already in @p out are kept unless an interface of the same path replaces them.
    static void getHidDevices(QMap<QString, HidDevices>& out);

    /// Holds the camera's lock for several exchanges, until unlock(). Without it each exchange
    /// takes the lock for itself, and another program may change the camera between two of them.
    /// The interface at @p path must be the one of createHandleWithPath().
    /// @return false when another program still holds it after @p limit
    bool lock(const QString& path, std::chrono::milliseconds limit);
    void unlock() { m_lock.release(); }
    /// Who held the lock when lock() failed.
    [[nodiscard]] const CameraLock::Holder& holder() const { return m_lock.holder(); }

    /// Remembers @p path for all further commands and opens it as the persistent handle.
    /// @return false when no supported camera is plugged in at all (whatever @p path is), when
    ///         hidapi does not start or when @p path cannot be opened
    bool createHandleWithPath(const QString& path);

    /// Remembers @p path for all further parameter commands, which open it by themselves, and holds
    /// no handle: the answers to other programs do not fill its queue.
    void setDevicePath(const QString& path) { m_devicePath = path; }

    /// The second half of createHandleWithPath(): opens the remembered path, whatever its ids.
    bool createHandleWithid(unsigned short vid, unsigned short pid);

    /// Logs an outgoing frame of HidFrame::kSize bytes.
    void printfStructSend(unsigned char* frame);

    /// Reads one value as text.
    /// @return the decoded text: local 8-bit text for the serial number, a decimal number for a
    ///         setting, numbers joined by dots for the version. Empty when the exchange fails or
    ///         the camera refuses; the one character U+FFFF when the interface cannot be opened.
    ///         Callers convert with QString::toInt, so both failures become 0.
    QString readInfoFromDevice(int cmd);

    /// Reads a setting of the camera.
    /// @return nothing when the exchange fails or the camera refuses
    [[nodiscard]] std::optional<int> readSetting(DeviceSetting setting);
    /// Why a parameter command has failed.
    enum class Failure {
        None,
        InUse,     ///< another program holds the camera's lock
        NotOpened, ///< the interface cannot be opened
        NotSent,   ///< the request could not be written
        Silent,    ///< no answer at all: a time-out or a read error
        Refused,   ///< a bad status, or the answer to another command
    };
    /// Of the last parameter command.
    [[nodiscard]] Failure lastFailure() const { return m_failure; }
    /// Whether the last command got no answer at all, or another program uses the camera: asking
    /// for more values would block as long again.
    [[nodiscard]] bool wasSilent() const
    {
        return m_failure == Failure::Silent || m_failure == Failure::InUse;
    }
    /// Writes the low 8 bits of @p value.
    /// @return false where writeInfoToDevice2() gives -1
    bool writeSetting(DeviceSetting setting, int value);

    /// Reads the current video format into the entries "width", "height" and "streamon".
    /// @return false when the exchange fails or @p cmd is not the video format command; true with
    ///         @p out untouched when the interface cannot be opened: then the last known
    ///         format stays valid
    bool readResolutionFromDevice(int cmd, QMap<QString, int>& out);

    /// Writes the low 8 bits of @p value.
    /// @return 0, or -1 when the interface cannot be opened, no answer comes in time or the camera
    ///         refuses. A read error after the write counts as success: the camera has the value.
    int writeInfoToDevice2(int value, int cmd);

    /// Writes a text; result as writeInfoToDevice2(). A text that does not fit a frame gives -1.
    int writeInfoToDevice(QString text, int cmd);

    /// Asks the camera at @p devPath, which may be another one than this object's, whether it is
    /// connected. The path alone selects the camera; the ids are not used.
    static bool getCameraConnectionStatus(const char* devPath, unsigned short vid,
                                          unsigned short pid);

    /// Called during a transfer, on its thread, after each packet that was acknowledged.
    using TransferProgress = std::function<void(qint64 sent, qint64 size)>;
    void setTransferProgress(TransferProgress progress) { m_progress = std::move(progress); }

    /// Transfers the firmware image in @p path over the persistent handle: start, packets, end.
    /// Blocks for the whole transfer, about ten seconds for each MiB, so call it on a worker
    /// thread. No command may be sent to this camera meanwhile: the caller holds the camera's lock,
    /// and took it before it opened the handle, which otherwise has answers to other programs'
    /// commands that would be taken for those of the transfer.
    /// @return true when start and end were acknowledged. The device itself decides whether the
    ///         packets make a valid image.
    bool updateFile(const QString& path);
    /// Sends HidCommands::FirmwareStart or FirmwareEnd; true when acknowledged.
    bool updateStartEnd(unsigned short cmd);
    /// Sends the image in packets; true when every packet was acknowledged.
    bool updateFilePacket(const QString& path);

    [[nodiscard]] QString devicePath() const { return m_devicePath; }
    [[nodiscard]] unsigned short vendorId() const { return m_vendorId; }
    [[nodiscard]] unsigned short productId() const { return m_productId; }
    /// Why the last firmware transfer failed, in words; empty when it did not say.
    [[nodiscard]] QString errorText() const { return m_errorText; }

private:
    int exchangeWrite(const char* operation, const QByteArray& payload, std::uint16_t dataLen,
                      int cmd);

    bool sendPacket(HidFrame::Buffer& frame, std::size_t length, std::uint32_t number);

    unsigned short m_vendorId = 0;
    unsigned short m_productId = 0;
    QString m_devicePath;
    CameraLock m_lock;
    HidHandle m_handle;
    HidFrame::Response m_lastResponse;
    QString m_errorText;
    Failure m_failure = Failure::None;
    TransferProgress m_progress;
};
