#include "TerminationRequest.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <qt_windows.h>

/// The end of the session, which the system reports to every window. A program that updates this
/// one ends it in the same way, and waits for its end.
class TerminationRequest::Watch : public QAbstractNativeEventFilter
{
public:
    explicit Watch(TerminationRequest* request)
        : m_request(request)
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override
    {
        Q_UNUSED(type)
        Q_UNUSED(result)
        const auto* event = static_cast<const MSG*>(message);
        if (event->message == WM_ENDSESSION && event->wParam != FALSE)
            emit m_request->requested();
        return false;
    }

private:
    TerminationRequest* m_request;
};

TerminationRequest::TerminationRequest(QObject* parent)
    : QObject(parent)
    , m_watch(std::make_unique<Watch>(this))
{
}

TerminationRequest::~TerminationRequest() = default;
