#pragma once

#include "RequestJob.h"
#include "TrustStore.h"

#include <deque>
#include <memory>
#include <QEvent>
#include <QObject>
#include <vector>

class QEventLoop;

namespace Brivane {

class Mailbox;
class Transfer;

/// Runs a client's requests on the client's thread, some at a time.
///
/// Every callback may end in close(), when it destroys the client: what follows one looks anew.
class RequestWorker : public QObject
{
    Q_OBJECT

public:
    static constexpr QEvent::Type kMail = QEvent::User;

    RequestWorker(std::shared_ptr<Mailbox> mailbox, QEventLoop& loop);
    ~RequestWorker() override;

    /// Ends every request as cancelled, then the loop. On the client's thread.
    void close();

    bool event(QEvent* event) override;

private slots:
    void onEnded(Brivane::Transfer* transfer);

private:
    /// Takes in new requests; false when the client is going away.
    bool takeIn();
    void endCancelled();
    void startWaiting();

    std::shared_ptr<Mailbox> m_mailbox;
    QEventLoop& m_loop;
    TrustStore m_trust;
    std::deque<RequestJob> m_waiting;
    std::vector<Transfer*> m_running;
    bool m_closed = false;
};

} // namespace Brivane
