#include "LogCategories.h"
#include "SessionEndBlock.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <qt_windows.h>
#include <QWidget>

/// The reason alone holds nothing up: the program must also refuse when the system asks it.
class SessionEndBlock::Hold : public QAbstractNativeEventFilter
{
public:
    Hold(const QWidget* window, const QString& why)
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the toolkit keeps handles as numbers.
        : m_window(reinterpret_cast<HWND>(window->winId()))
    {
        if (!::ShutdownBlockReasonCreate(m_window, reinterpret_cast<const wchar_t*>(why.utf16())))
            qCWarning(updateLog) << "the end of the session has no reason to show:"
                                 << ::GetLastError();
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
    ~Hold() override { ::ShutdownBlockReasonDestroy(m_window); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override
    {
        Q_UNUSED(type)
        if (static_cast<const MSG*>(message)->message != WM_QUERYENDSESSION)
            return false;
        qCDebug(updateLog) << "the session cannot end now, a camera is being updated";
        *result = FALSE;
        return true;
    }

private:
    HWND m_window;
};

SessionEndBlock::SessionEndBlock(QWidget* window, const QString& why)
    : m_hold(std::make_unique<Hold>(window, why))
{
}

SessionEndBlock::~SessionEndBlock() = default;
