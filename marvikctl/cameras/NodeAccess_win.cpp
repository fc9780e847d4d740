#include "NodeAccess.h"

#include <QCoreApplication>
#include <qt_windows.h>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(NodeAccess)
};

} // namespace

Failure NodeAccess::explain(const QString& node, Interface which)
{
    if (which == Interface::Video)
        return {Failure::Kind::NotAnswered, Texts::tr("the picture controls cannot be opened"),
                Texts::tr("Look at \"Camera privacy settings\" of Windows.")};
    const HANDLE opened =
        ::CreateFileW(reinterpret_cast<const wchar_t*>(node.utf16()), GENERIC_READ | GENERIC_WRITE,
                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    const DWORD error = opened == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
    if (opened != INVALID_HANDLE_VALUE)
        ::CloseHandle(opened);
    switch (error) {
    case ERROR_ACCESS_DENIED:
        return {Failure::Kind::NoPermission, Texts::tr("no permission to open the camera"),
                Texts::tr("A policy of this computer forbids access to the device.")};
    case ERROR_SHARING_VIOLATION:
        return {Failure::Kind::Busy, Texts::tr("another program has the camera for itself"), {}};
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DEVICE_NOT_CONNECTED:
        return {Failure::Kind::Gone, Texts::tr("the camera has left the bus"), {}};
    default:
        return {Failure::Kind::NotAnswered, Texts::tr("the camera could not be opened"), {}};
    }
}
