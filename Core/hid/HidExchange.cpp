#include "HidExchange.h"

#include "HidApi.h"
#include "HidErrorText.h"
#include "HidFrameLog.h"

void HidExchange::run(const QByteArray& path, const HidFrame::Buffer& frame, int timeoutMs,
                      WriteRule rule, const CameraLock* held)
{
    CameraLock lock;
    if (!(held && held->isHeld()) &&
        !lock.acquire(path, CameraLock::Use::Exchange, std::chrono::milliseconds(timeoutMs))) {
        m_outcome = Outcome::InUse;
        m_errorText = lock.holder().toString();
        return;
    }
    const HidLibrary library;
    const HidHandle handle = HidApi::open(path.constData());
    if (!handle)
        return;

    HidFrameLog::sent(frame.data());
    if (hid_write(handle.get(), frame.data(), frame.size()) < 1 && rule == WriteRule::MustSucceed) {
        m_outcome = Outcome::WriteFailed;
        m_errorText = hidErrorText(handle.get());
        return;
    }

    m_outcome = Outcome::Finished;
    // A report may be shorter than the frame; what did not arrive must not be that of an answer
    // before.
    m_received.fill(0);
    m_readResult = hid_read_timeout(handle.get(), m_received.data(), m_received.size(), timeoutMs);
    if (m_readResult < 1 && rule == WriteRule::MustSucceed)
        m_errorText = hidErrorText(handle.get());
}
