#include "PreviewFailureText.h"

QString PreviewFailureText::noPermission()
{
    return tr("You have no permission to open the camera. Install the program's udev rule, or join "
              "the group \"video\" and log in again.");
}

QString PreviewFailureText::partMissing(const QString& part)
{
    return tr("A part of GStreamer is missing: %1. Install it and start the program again.")
        .arg(part);
}
