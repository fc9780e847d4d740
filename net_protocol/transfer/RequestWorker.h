#pragma once

#include "TrustStore.h"

#include <memory>
#include <QEvent>
#include <QObject>
#include <vector>

class QEventLoop;

namespace Brivane {

class Mailbox;
class Transfer;

/// Runs the requests of a client on the client's thread.
///
/// Every callback may destroy the client and thereby call close(). So nothing that was read before
/// a callback is used after it.
class RequestWorker : public QObject
{
    Q_OBJECT

public:
    static constexpr QEvent::Type kMail = QEvent::User;

    RequestWorker(std::shared_ptr<Mailbox> mailbox, QEventLoop& loop);
    ~RequestWorker() override;

    /// Ends every request as cancelled, then the loop. To be called on the client's thread.
    void close();

    bool event(QEvent* event) override;

private slots:
    void onEnded(Brivane::Transfer* transfer);

private:
    void startNew();
    void endCancelled();

    std::shared_ptr<Mailbox> m_mailbox;
    QEventLoop& m_loop;
    TrustStore m_trust;
    std::vector<Transfer*> m_running;
};

} // namespace Brivane
