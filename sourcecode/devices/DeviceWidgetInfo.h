#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

/// One listed camera, copied by value between the list, its pages and the main window.
struct DeviceWidgetInfo
{
    quint8 status = 0;                  ///< 1 = connected, 0 = failed
    QMap<QString, QVariant> properties; ///< for a page's own data; the shell uses none
    QString name;                       ///< display name
    QString model;                      ///< model text; the update service knows the model by it
    QString icon;
    QString path;          ///< video device path
    QString hidPath;       ///< HID interface path
    QString deviceVersion; ///< firmware version read from the camera
    QString sn;            ///< serial number read from the camera
};

Q_DECLARE_METATYPE(DeviceWidgetInfo)
