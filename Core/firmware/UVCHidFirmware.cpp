#include "FirmwareImage.h"
#include "HidCommands.h"
#include "HidErrorText.h"
#include "HidFrameLog.h"
#include "LogCategories.h"
#include "PacketPause.h"
#include "UVCHid.h"

#include <algorithm>

namespace {

constexpr int kControlTimeoutMs = 3000;
constexpr int kPacketTimeoutMs = 1000;
constexpr int kStartAttempts = 3;
constexpr int kMaxResends = 6;
constexpr std::chrono::milliseconds kPacketPause{10};
constexpr std::chrono::milliseconds kResendPause{20};
constexpr std::size_t kControlDumpBytes = 20;

} // namespace

bool UVCHid::updateFile(const QString& path)
{
    m_errorText.clear();
    if (path.isEmpty()) {
        m_errorText = QStringLiteral("升级的文件路径为空");
        return false;
    }

    bool started = false;
    for (int attempt = 0; attempt < kStartAttempts && !started; ++attempt)
        started = updateStartEnd(HidCommands::FirmwareStart);
    if (!started) {
        qCCritical(updateLog) << "重试3次发送升级开始命令失败，退出升级。";
        return false;
    }

    // The end command is sent even when a packet has failed: the device checks the image itself,
    // and without the end command it would wait for packets forever.
    updateFilePacket(path);
    if (!updateStartEnd(HidCommands::FirmwareEnd)) {
        qCCritical(updateLog) << "发送升级结束命令失败";
        return false;
    }
    return true;
}

bool UVCHid::updateStartEnd(unsigned short cmd)
{
    if (!m_handle)
        return false;
    hid_set_nonblocking(m_handle.get(), 0);

    const HidFrame::Buffer frame = HidFrame::packRequest(cmd, HidFrame::Control, {}, 0);
    HidFrameLog::sent(frame.data());
    if (hid_write(m_handle.get(), frame.data(), frame.size()) < 1) {
        qCDebug(updateLog) << "UVCHid::updateStartEnd" << __LINE__ << hidErrorText(m_handle.get());
        qCDebug(updateLog) << "hid_write error";
        return false;
    }

    HidFrame::Buffer received{};
    if (hid_read_timeout(m_handle.get(), received.data(), received.size(), kControlTimeoutMs) < 1) {
        qCDebug(updateLog) << hidErrorText(m_handle.get());
        qCDebug(updateLog) << "hid_read error";
        qCCritical(updateLog) << "上位机收不到设备端的数据";
        return false;
    }
    HidFrameLog::dump(received, kControlDumpBytes);
    m_lastResponse = HidFrame::parseResponse(received);
    if (m_lastResponse.cmd != cmd) {
        qCCritical(updateLog).noquote()
            << QStringLiteral("设备返回指令不区配：%1 -> %2").arg(m_lastResponse.cmd).arg(cmd);
        return false;
    }
    if (m_lastResponse.status != 0) {
        qCCritical(updateLog) << m_lastResponse.status;
        qCCritical(updateLog) << "返回失败状态";
        return false;
    }
    HidFrameLog::received(m_lastResponse);
    return true;
}

bool UVCHid::updateFilePacket(const QString& path)
{
    if (!m_handle)
        return false;
    hid_set_nonblocking(m_handle.get(), 0);

    const std::optional<QByteArray> image = FirmwareImage::read(path);
    if (!image)
        return false;

    // One buffer for all packets: after the payload of a short last packet it still holds bytes of
    // the packet before. The device uses the length and ignores them.
    HidFrame::Buffer frame{};
    const auto size = static_cast<std::size_t>(image->size());
    std::size_t offset = 0;
    std::uint32_t number = 0;
    while (offset < size) {
        const std::size_t length = std::min(size - offset, HidFrame::kMaxPayload);
        std::copy_n(image->cbegin() + static_cast<int>(offset), length,
                    frame.begin() + HidFrame::kHeaderSize);
        offset += length;
        packetPause(kPacketPause);
        ++number;
        const std::uint8_t dataStatus =
            offset == size ? HidFrame::ReadOrFinal : HidFrame::PayloadFollows;
        HidFrame::packHeader(frame, HidCommands::FirmwarePacket, dataStatus,
                             static_cast<std::uint16_t>(length), number);
        if (!sendPacket(frame, length, number))
            return false;
        if (m_progress)
            m_progress(static_cast<qint64>(offset), image->size());
    }
    return true;
}

/// Sends one packet until the device acknowledges it.
bool UVCHid::sendPacket(HidFrame::Buffer& frame, std::size_t length, std::uint32_t number)
{
    for (int resends = 0;; ++resends) {
        qCDebug(updateLog, "packNUm:%u\n", number);
        qCDebug(updateLog, "data_len:%zu\n", length);
        const std::uint16_t head = HidFrame::checksum(frame.data(), HidFrame::kChecksummedHeader);
        qCDebug(updateLog, "headCRC1_%x\n", head);
        qCDebug(updateLog, "headCRC2_%x\n",
                HidFrame::checksum(frame.data() + HidFrame::kHeaderSize, length, head));
        HidFrame::sealFrame(frame, length);
        HidFrameLog::sent(frame.data());
        if (hid_write(m_handle.get(), frame.data(), frame.size()) < 1) {
            qCDebug(updateLog) << hidErrorText(m_handle.get());
            qCDebug(updateLog) << "hid_write error";
            return false;
        }

        HidFrame::Buffer received{};
        if (hid_read_timeout(m_handle.get(), received.data(), received.size(), kPacketTimeoutMs) <
            1) {
            qCDebug(updateLog) << hidErrorText(m_handle.get());
            return false;
        }
        m_lastResponse = HidFrame::parseResponse(received);
        HidFrameLog::status(m_lastResponse);
        HidFrameLog::received(m_lastResponse);

        // The limit comes before the acknowledgement: a device that understands a packet only at
        // the last resend is too unreliable for the rest of the image.
        if (resends == kMaxResends)
            return false;
        if (m_lastResponse.answers(HidCommands::FirmwarePacket))
            return true;
        qCDebug(updateLog, "retryCount:%d\n", resends);
        packetPause(kResendPause);
    }
}
