#include "FirmwareImage.h"
#include "HidCommands.h"
#include "HidErrorText.h"
#include "HidFrameLog.h"
#include "PacketPause.h"
#include "UVCHid.h"

#include <algorithm>
#include <QDebug>

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
        qCritical() << "重试3次发送升级开始命令失败，退出升级。";
        return false;
    }

    // The end command is sent whatever became of the packets: the device judges the image itself,
    // and one that waits for packets forever is of no use to anybody.
    updateFilePacket(path);
    if (!updateStartEnd(HidCommands::FirmwareEnd)) {
        qCritical() << "发送升级结束命令失败";
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
        qDebug() << "UVCHid::updateStartEnd" << __LINE__ << hidErrorText(m_handle.get());
        qDebug() << "hid_write error";
        return false;
    }

    HidFrame::Buffer received{};
    if (hid_read_timeout(m_handle.get(), received.data(), received.size(), kControlTimeoutMs) < 1) {
        qDebug() << hidErrorText(m_handle.get());
        qDebug() << "hid_read error";
        qCritical() << "上位机收不到设备端的数据";
        return false;
    }
    HidFrameLog::dump(received, kControlDumpBytes);
    m_lastResponse = HidFrame::parseResponse(received);
    if (m_lastResponse.cmd != cmd) {
        qCritical().noquote()
            << QStringLiteral("设备返回指令不区配：%1 -> %2").arg(m_lastResponse.cmd).arg(cmd);
        return false;
    }
    if (m_lastResponse.status != 0) {
        qCritical() << m_lastResponse.status;
        qCritical() << "返回失败状态";
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

    // One buffer for all packets: what follows the payload of a short last packet are the bytes of
    // the packet before it, and the device goes by the length.
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
    }
    return true;
}

/// Sends one packet until the device acknowledges it.
bool UVCHid::sendPacket(HidFrame::Buffer& frame, std::size_t length, std::uint32_t number)
{
    for (int resends = 0;; ++resends) {
        qDebug("packNUm:%u\n", number);
        qDebug("data_len:%zu\n", length);
        const std::uint16_t head = HidFrame::checksum(frame.data(), HidFrame::kChecksummedHeader);
        qDebug("headCRC1_%x\n", head);
        qDebug("headCRC2_%x\n",
               HidFrame::checksum(frame.data() + HidFrame::kHeaderSize, length, head));
        HidFrame::sealFrame(frame, length);
        HidFrameLog::sent(frame.data());
        if (hid_write(m_handle.get(), frame.data(), frame.size()) < 1) {
            qDebug() << hidErrorText(m_handle.get());
            qDebug() << "hid_write error";
            return false;
        }

        HidFrame::Buffer received{};
        if (hid_read_timeout(m_handle.get(), received.data(), received.size(), kPacketTimeoutMs) <
            1) {
            qDebug() << hidErrorText(m_handle.get());
            return false;
        }
        m_lastResponse = HidFrame::parseResponse(received);
        HidFrameLog::status(m_lastResponse);
        HidFrameLog::received(m_lastResponse);

        // The limit comes first: a device that needs the last resend to understand a packet is
        // not to be trusted with the rest, even when it acknowledges that one.
        if (resends == kMaxResends)
            return false;
        if (m_lastResponse.answers(HidCommands::FirmwarePacket))
            return true;
        qDebug("retryCount:%d\n", resends);
        packetPause(kResendPause);
    }
}
