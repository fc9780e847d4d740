#include "PixelSize.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <qt_windows.h>

class PixelSize::Filter : public QAbstractNativeEventFilter
{
public:
    Filter() { QCoreApplication::instance()->installNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override
    {
        Q_UNUSED(type)
        Q_UNUSED(result)
        const auto* event = static_cast<const MSG*>(message);
        if (event->message != WM_DPICHANGED ||
            QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling))
            return false;
        // Qt moves the window to the suggested place, and does the rest of what a change of monitor
        // needs. A window that is smaller than suggested could lie on the old monitor at that
        // place, and would get this message again; where it is now, it lies on the new one.
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the message carries a pointer as a number.
        ::GetWindowRect(event->hwnd, reinterpret_cast<RECT*>(event->lParam));
        return false;
    }
};

PixelSize::PixelSize()
    : m_filter(std::make_unique<Filter>())
{
}

PixelSize::~PixelSize() = default;
