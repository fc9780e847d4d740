#include "UsbBus.h"

QString UsbBus::of(const QString& hidPath)
{
    Q_UNUSED(hidPath) // Windows does not show the bus in the path
    return {};
}
