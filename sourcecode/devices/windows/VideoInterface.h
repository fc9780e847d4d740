#pragma once

#include <QString>

/// The video interface of a camera whose HID interface has just arrived.
namespace VideoInterface {

/// The interfaces of one camera arrive one after the other, and only the HID interface makes an
/// event. Waits up to a second for the video interface, unless there is none to come or the camera
/// has left again.
/// @param hidInterface the path of the HID interface, as the system reports it
void waitFor(const QString& hidInterface);

} // namespace VideoInterface
