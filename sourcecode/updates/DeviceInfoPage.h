#pragma once

#include "DeviceWidgetInfo.h"

#include <memory>
#include <QJsonObject>
#include <QWidget>

namespace Ui {
class DeviceInfoPage;
}

/// Picture, name, serial number and firmware version of the camera that is open, and the start of
/// its firmware update.
class DeviceInfoPage : public QWidget
{
    Q_OBJECT

public:
    explicit DeviceInfoPage(QWidget* parent = nullptr);
    ~DeviceInfoPage() override;

    void setProductInfo(const DeviceWidgetInfo& info);

public slots:
    void slotNeedUpgrade();

signals:
    void sigUpgrade();
    void sigSetDownloadData(const QJsonObject& downloadData, const QString& text);
    void sigShowToast(const QString& text);

private:
    std::unique_ptr<Ui::DeviceInfoPage> ui;
    DeviceWidgetInfo m_device;
};
