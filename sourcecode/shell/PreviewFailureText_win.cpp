#include "PreviewFailureText.h"

QString PreviewFailureText::noPermission()
{
    return tr("Windows does not let programs use the camera. Allow it for desktop apps in the "
              "privacy settings.");
}

QString PreviewFailureText::partMissing(const QString& part)
{
    return tr("A part of Windows that shows pictures is missing: %1. On Windows N install the "
              "Media "
              "Feature Pack.")
        .arg(part);
}
