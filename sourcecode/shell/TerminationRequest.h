#pragma once

#include <memory>
#include <QObject>

/// Emits a signal when the system requests the program to end, because the session or the computer
/// is shut down. So the program can end in its normal way and complete a firmware transfer. There
/// may be one object at a time; GUI thread.
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
