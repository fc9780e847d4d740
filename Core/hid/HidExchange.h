#pragma once

#include "CameraLock.h"
#include "HidFrame.h"

#include <QByteArray>
#include <QString>

/// One request and its answer over a HID interface that is opened for just that.
class HidExchange
{
public:
    enum class Outcome {
        InUse, ///< another program holds the camera's lock; see errorText()
        OpenFailed,
        WriteFailed,
        Finished ///< the read step was reached; see readResult()
    };

    /// What happens after a failed write.
    enum class WriteRule {
        MustSucceed, ///< the exchange ends there
        Ignored      ///< the exchange continues and waits for the answer
    };

    /// Opens @p path, writes @p frame whole, waits up to @p timeoutMs for the answer and closes.
    /// @param held the camera's lock when the caller holds it; otherwise the exchange takes it and
    ///        waits for it up to @p timeoutMs
    void run(const QByteArray& path, const HidFrame::Buffer& frame, int timeoutMs, WriteRule rule,
             const CameraLock* held = nullptr);

    [[nodiscard]] Outcome outcome() const { return m_outcome; }
    /// Result of hid_read_timeout(): bytes, 0 after a time-out, -1 after an error.
    [[nodiscard]] int readResult() const { return m_readResult; }
    /// hidapi's text about the failed write or read, fetched while the handle was open, or who
    /// holds the camera's lock.
    [[nodiscard]] QString errorText() const { return m_errorText; }
    /// The answer; bytes that did not arrive are zero.
    [[nodiscard]] const HidFrame::Buffer& received() const { return m_received; }

private:
    Outcome m_outcome = Outcome::OpenFailed;
    int m_readResult = 0;
    QString m_errorText;
    HidFrame::Buffer m_received{};
};
