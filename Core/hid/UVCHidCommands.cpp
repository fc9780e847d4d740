#include "CodePages.h"
#include "DeviceSettings.h"
#include "HidCommands.h"
#include "HidExchange.h"
#include "HidFrameLog.h"
#include "LogCategories.h"
#include "ReportedText.h"
#include "UVCHid.h"

#include <QStringList>

namespace {

constexpr int kReadTimeoutMs = 3000;
constexpr int kWriteTimeoutMs = 1000;
constexpr const char* kOpenFailed = "HID设备打开失败!";
constexpr std::size_t kProbeDumpBytes = 30;

HidFrame::Buffer readRequest(int cmd)
{
    return HidFrame::packRequest(static_cast<std::uint16_t>(cmd), HidFrame::ReadOrFinal, {}, 0);
}

/// Zeros at the end are padding; one inside belongs to the text.
QString decodeText(QByteArray payload)
{
    while (payload.endsWith('\0'))
        payload.chop(1);
    return QString::fromLocal8Bit(payload.constData(), payload.size());
}

/// The last byte is the value, as a signed number; an answer without payload reads as 0.
QString decodeSetting(const QByteArray& payload)
{
    const int value = payload.isEmpty() ? 0 : static_cast<signed char>(payload.back());
    return QString::number(value);
}

/// Every byte is one number of the version, sign-extended to 32 bits: 0x80 reads as 4294967168.
QString decodeVersion(const QByteArray& payload)
{
    QStringList numbers;
    numbers.reserve(payload.size());
    for (const char byte : payload)
        numbers << QString::number(static_cast<quint32>(static_cast<signed char>(byte)));
    return numbers.join(QLatin1Char('.'));
}

/// Whether an exchange came as far as its read step; logs why not.
bool reachedRead(const char* operation, int line, const HidExchange& exchange)
{
    switch (exchange.outcome()) {
    case HidExchange::Outcome::InUse:
        qCDebug(hidLog) << operation << line << "The camera is in use by" << exchange.errorText();
        return false;
    case HidExchange::Outcome::OpenFailed:
        qCDebug(hidLog) << kOpenFailed;
        return false;
    case HidExchange::Outcome::WriteFailed:
        qCDebug(hidLog) << operation << line << exchange.errorText();
        qCDebug(hidLog) << "hid_write error";
        return false;
    case HidExchange::Outcome::Finished:
        break;
    }
    return true;
}

/// Why an exchange has brought no answer.
UVCHid::Failure failureOf(const HidExchange& exchange)
{
    switch (exchange.outcome()) {
    case HidExchange::Outcome::InUse:
        return UVCHid::Failure::InUse;
    case HidExchange::Outcome::OpenFailed:
        return UVCHid::Failure::NotOpened;
    case HidExchange::Outcome::WriteFailed:
        return UVCHid::Failure::NotSent;
    case HidExchange::Outcome::Finished:
        break;
    }
    return exchange.readResult() < 1 ? UVCHid::Failure::Silent : UVCHid::Failure::None;
}

/// Whether a read command brought an answer; logs why not.
bool isAnswered(const char* operation, int line, const HidExchange& exchange)
{
    if (!reachedRead(operation, line, exchange))
        return false;
    if (exchange.readResult() < 1) {
        qCDebug(hidLog) << operation << line << "Timeout or error";
        return false;
    }
    return true;
}

} // namespace

QString UVCHid::readInfoFromDevice(int cmd)
{
    constexpr const char* operation = "UVCHid::readInfoFromDevice";
    qCDebug(hidLog) << operation << "m_devicePath =" << m_devicePath;

    HidExchange exchange;
    exchange.run(m_devicePath.toUtf8(), readRequest(cmd), kReadTimeoutMs,
                 HidExchange::WriteRule::MustSucceed, &m_lock);
    m_failure = failureOf(exchange);
    if (!isAnswered(operation, __LINE__, exchange)) {
        const bool opened = exchange.outcome() != HidExchange::Outcome::OpenFailed;
        return opened ? QString() : ReportedText::notOpened();
    }

    m_lastResponse = HidFrame::parseResponse(exchange.received());
    HidFrameLog::received(m_lastResponse);
    const QByteArray payload = HidFrame::payloadOf(exchange.received());
    for (const char byte : payload) {
        const int number{qint8(byte)};
        qCDebug(hidLog) << number;
        qCDebug(hidLog, "%d\n", number);
    }

    if (!m_lastResponse.answers(static_cast<std::uint16_t>(cmd))) {
        m_failure = Failure::Refused;
        return {};
    }
    if (cmd == HidCommands::SerialNumber)
        return decodeText(payload);
    if (DeviceSettings::findByReadCode(cmd))
        return decodeSetting(payload);
    QString version = decodeVersion(payload);
    qCDebug(hidLog) << version;
    return version;
}

std::optional<int> UVCHid::readSetting(DeviceSetting setting)
{
    bool isNumber = false;
    const int value = readInfoFromDevice(DeviceSettings::row(setting).readCode).toInt(&isNumber);
    return isNumber ? std::optional<int>(value) : std::nullopt;
}

bool UVCHid::writeSetting(DeviceSetting setting, int value)
{
    return writeInfoToDevice2(value, DeviceSettings::row(setting).writeCode()) != -1;
}

bool UVCHid::readResolutionFromDevice(int cmd, QMap<QString, int>& out)
{
    constexpr const char* operation = "UVCHid::readResolutionFromDevice";
    qCDebug(hidLog) << operation << "m_devicePath =" << m_devicePath;

    HidExchange exchange;
    exchange.run(m_devicePath.toUtf8(), readRequest(cmd), kReadTimeoutMs,
                 HidExchange::WriteRule::MustSucceed, &m_lock);
    m_failure = failureOf(exchange);
    if (!isAnswered(operation, __LINE__, exchange))
        return exchange.outcome() == HidExchange::Outcome::OpenFailed;

    m_lastResponse = HidFrame::parseResponse(exchange.received());
    HidFrameLog::status(m_lastResponse);
    HidFrameLog::received(m_lastResponse);
    if (cmd != HidCommands::VideoFormat || !m_lastResponse.answers(HidCommands::VideoFormat)) {
        m_failure = Failure::Refused;
        return false;
    }

    constexpr std::size_t widthOffset = 0;
    constexpr std::size_t heightOffset = 4;
    constexpr std::size_t streamOffset = 32;
    const int height = HidFrame::payloadInt32(exchange.received(), heightOffset);
    const int width = HidFrame::payloadInt32(exchange.received(), widthOffset);
    const int streaming = HidFrame::payloadInt32(exchange.received(), streamOffset);
    out.insert(QStringLiteral("height"), height);
    out.insert(QStringLiteral("width"), width);
    out.insert(QStringLiteral("streamon"), streaming);
    qCDebug(hidLog) << "height" << height << "width" << width << "streamon" << streaming;
    return true;
}

int UVCHid::writeInfoToDevice2(int value, int cmd)
{
    const char lowByte = static_cast<char>(static_cast<unsigned char>(value));
    return exchangeWrite("UVCHid::writeInfoToDevice2", QByteArray(1, lowByte), 1, cmd);
}

int UVCHid::writeInfoToDevice(QString text, int cmd)
{
    constexpr const char* operation = "UVCHid::writeInfoToDevice";
    const QByteArray payload = CodePages::encode(text);
    if (static_cast<std::size_t>(payload.size()) > HidFrame::kMaxPayload) {
        qCDebug(hidLog) << operation << __LINE__ << "text does not fit a frame:" << payload.size();
        return -1;
    }
    return exchangeWrite(operation, payload, static_cast<std::uint16_t>(text.size()), cmd);
}

int UVCHid::exchangeWrite(const char* operation, const QByteArray& payload, std::uint16_t dataLen,
                          int cmd)
{
    qCDebug(hidLog) << operation << "m_devicePath =" << m_devicePath;

    HidExchange exchange;
    exchange.run(m_devicePath.toUtf8(),
                 HidFrame::packRequest(static_cast<std::uint16_t>(cmd), HidFrame::PayloadFollows,
                                       payload, dataLen),
                 kWriteTimeoutMs, HidExchange::WriteRule::Ignored, &m_lock);
    m_failure = failureOf(exchange);
    if (!reachedRead(operation, __LINE__, exchange))
        return -1;
    // Only a time-out fails here. After a read error the buffer is zero, so the status reads 0: the
    // camera acts on a write before it answers, so it has most likely taken the value.
    if (exchange.readResult() == 0) {
        qCDebug(hidLog) << operation << __LINE__ << "Timeout or error";
        return -1;
    }
    m_lastResponse = HidFrame::parseResponse(exchange.received());
    HidFrameLog::received(m_lastResponse);
    m_failure = m_lastResponse.status == 0 ? Failure::None : Failure::Refused;
    return m_failure == Failure::None ? 0 : -1;
}

bool UVCHid::getCameraConnectionStatus(const char* devPath, unsigned short vid, unsigned short pid)
{
    constexpr const char* operation = "UVCHid::getCameraConnectionStatus";
    Q_UNUSED(vid)
    Q_UNUSED(pid)
    qCDebug(hidLog) << operation << "devPath =" << devPath;

    HidExchange exchange;
    exchange.run(devPath, readRequest(HidCommands::ConnectionProbe), kReadTimeoutMs,
                 HidExchange::WriteRule::MustSucceed);
    if (!reachedRead(operation, __LINE__, exchange))
        return false;
    HidFrameLog::dump(exchange.received(), kProbeDumpBytes);
    if (exchange.readResult() < 1) {
        qCDebug(hidLog) << exchange.errorText();
        qCDebug(hidLog) << "hid_read error";
        return false;
    }

    const HidFrame::Response response = HidFrame::parseResponse(exchange.received());
    HidFrameLog::received(response);
    const QByteArray payload = HidFrame::payloadOf(exchange.received());
    return response.answers(HidCommands::ConnectionProbe) && !payload.isEmpty() &&
           payload.front() == 0;
}
