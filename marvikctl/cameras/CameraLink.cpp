#include "CameraLink.h"

#include "HidCommands.h"
#include "NodeAccess.h"
#include "PictureSettings.h"
#include "UVCHid.h"
#include "VideoProcAmp.h"

#include <utility>

CameraLink::CameraLink(FoundCamera camera, std::chrono::milliseconds timeout)
    : m_camera(std::move(camera))
    , m_timeout(timeout)
{
}

CameraLink::~CameraLink() = default;
CameraLink::CameraLink(CameraLink&& other) noexcept = default;
CameraLink& CameraLink::operator=(CameraLink&& other) noexcept = default;

std::optional<Failure> CameraLink::open()
{
    close();
    m_hid = std::make_unique<UVCHid>();
    if (!m_hid->lock(path(), m_timeout)) {
        const Failure failure = inUse(m_hid->holder());
        m_hid.reset();
        return failure;
    }
    m_hid->setDevicePath(path());
    return std::nullopt;
}

Failure CameraLink::inUse(const CameraLock::Holder& holder)
{
    const bool isLong = holder.use == CameraLock::Use::Firmware;
    return {Failure::Kind::Busy, tr("the camera is in use by %1").arg(holder.toString()),
            isLong ? tr("Its firmware is being written, which takes minutes.")
                   : tr("Try again, or wait longer with --timeout.")};
}

void CameraLink::close()
{
    m_picture.reset();
    m_video.reset();
    m_hid.reset();
    m_silence.reset();
}

std::optional<Failure> CameraLink::probe()
{
    if (m_silence)
        return m_silence;
    const QByteArray node = path().toUtf8();
    if (UVCHid::getCameraConnectionStatus(node.constData(), m_camera.hid.vendorId,
                                          m_camera.hid.productId))
        return std::nullopt;
    m_silence = NodeAccess::explain(path(), NodeAccess::Interface::Control);
    if (m_silence->kind == Failure::Kind::NotAnswered)
        m_silence = Failure{Failure::Kind::NotAnswered, tr("the camera does not answer"),
                            tr("Unplug it and plug it in again.")};
    return m_silence;
}

Result<QString> CameraLink::serialNumber()
{
    if (m_serial)
        return *m_serial;
    auto text = readText(HidCommands::SerialNumber);
    if (text)
        m_serial = *text;
    return text;
}

Result<QString> CameraLink::firmwareVersion()
{
    return readText(HidCommands::FirmwareVersion);
}

Result<StreamFormat> CameraLink::stream()
{
    if (m_silence)
        return *m_silence;
    QMap<QString, int> answer;
    if (!m_hid->readResolutionFromDevice(HidCommands::VideoFormat, answer) || answer.isEmpty())
        return lastFailure();
    return StreamFormat::of(answer);
}

Result<QString> CameraLink::readText(int command)
{
    if (m_silence)
        return *m_silence;
    QString text = m_hid->readInfoFromDevice(command);
    if (m_hid->lastFailure() != UVCHid::Failure::None)
        return lastFailure();
    return text;
}

/// Why the last exchange has failed.
Failure CameraLink::lastFailure()
{
    switch (m_hid->lastFailure()) {
    case UVCHid::Failure::InUse:
        return inUse(m_hid->holder());
    case UVCHid::Failure::NotOpened:
        m_silence = NodeAccess::explain(path(), NodeAccess::Interface::Control);
        return *m_silence;
    case UVCHid::Failure::NotSent:
    case UVCHid::Failure::Silent:
        m_silence = Failure{Failure::Kind::NotAnswered, tr("the camera does not answer"),
                            tr("Unplug it and plug it in again.")};
        return *m_silence;
    case UVCHid::Failure::Refused:
    case UVCHid::Failure::None:
        break;
    }
    return {Failure::Kind::Refused, tr("the camera refuses the request"), {}};
}

std::optional<Failure> CameraLink::openPicture()
{
    if (m_picture)
        return std::nullopt;
    m_video = CameraInventory::videoOf(m_camera);
    if (!m_video)
        return Failure{Failure::Kind::Gone, tr("the camera has no video interface"),
                       tr("Unplug it and plug it in again.")};
    m_picture = openVideoProcAmp(*m_video);
    if (!m_picture)
        return pictureFailure();
    return std::nullopt;
}

Failure CameraLink::pictureFailure() const
{
    Failure reason = NodeAccess::explain(m_video->displayName, NodeAccess::Interface::Video);
    if (reason.kind == Failure::Kind::NotAnswered)
        return {Failure::Kind::Refused, tr("the camera refuses a picture value"), {}};
    return reason;
}

Result<int> CameraLink::readPicture(PictureProperty property)
{
    if (const auto failure = openPicture())
        return *failure;
    VideoProcAmpRecord record;
    record.property = property;
    if (!m_picture->get(record))
        return pictureFailure();
    return static_cast<int>(record.value);
}

std::optional<Failure> CameraLink::writePicture(PictureProperty property, int value)
{
    if (auto failure = openPicture())
        return failure;
    VideoProcAmpRecord record;
    record.property = property;
    m_picture->getRange(record); // for its flags, with which the value is written
    if (!m_picture->set(record, value))
        return pictureFailure();
    return std::nullopt;
}

Result<int> CameraLink::read(const Register& id)
{
    if (isPicture(id))
        return readPicture(std::get<PictureProperty>(id));
    if (m_silence)
        return *m_silence;
    const std::optional<int> value = m_hid->readSetting(std::get<DeviceSetting>(id));
    if (!value)
        return lastFailure();
    return *value;
}

Result<RegisterValues> CameraLink::read(const Registers& ids)
{
    RegisterValues values;
    for (const Register& id : ids) {
        const auto value = read(id);
        if (!value)
            return value.failure();
        values[id] = *value;
    }
    return values;
}

std::optional<Failure> CameraLink::write(const Register& id, int value)
{
    if (isPicture(id))
        return writePicture(std::get<PictureProperty>(id), value);
    if (m_silence)
        return m_silence;
    if (!m_hid->writeSetting(std::get<DeviceSetting>(id), value))
        return lastFailure();
    return std::nullopt;
}

std::optional<Failure>
CameraLink::transferFirmware(const QString& file,
                             const std::function<void(qint64, qint64)>& onProgress)
{
    m_picture.reset();
    m_hid.reset(); // with its lock, which is one for exchanges
    CameraLock lock;
    if (!lock.acquire(path().toUtf8(), CameraLock::Use::Firmware, m_timeout))
        return inUse(lock.holder());
    UVCHid transfer;
    if (!transfer.createHandleWithPath(path()))
        return NodeAccess::explain(path(), NodeAccess::Interface::Control);
    transfer.setTransferProgress(onProgress);
    if (transfer.updateFile(file))
        return std::nullopt;
    return Failure{Failure::Kind::NotAnswered, tr("the camera has not acknowledged the transfer"),
                   transfer.errorText()};
}
