#pragma once

#include <memory>
#include <QObject>

/// Turns the system's request to end, which comes when a session or the computer is shut down, into
/// a signal, so that the program leaves by its own door and a camera that is being written is
/// written to the end. One at a time; GUI thread.
class TerminationRequest : public QObject
{
    Q_OBJECT

public:
    explicit TerminationRequest(QObject* parent = nullptr);
    ~TerminationRequest() override;

signals:
    void requested();

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};
