#pragma once

#include "CHttpClient.h"
#include "DeviceWidgetInfo.h"

#include <memory>
#include <QJsonObject>
#include <QWidget>
#include <string>

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
    /// Asks the update service whether it has newer firmware for the camera.
    void slotNeedUpgrade();

signals:
    void sigUpgrade();
    /// The service has an offer, or an answer that only its receiver can make something of.
    /// @param text name of the product
    void sigSetDownloadData(const QJsonObject& downloadData, const QString& text);
    void sigShowToast(const QString& text);

private:
    void initHttpReq();
    void takeAnswer(const QJsonObject& answer);
    void setAsking(bool asking);

    std::unique_ptr<Ui::DeviceInfoPage> ui;
    DeviceWidgetInfo m_device;
    std::string mBody;
    QJsonObject mDownloadData;
    /// Last, so that its callbacks end before anything they use is gone.
    Brivane::CHttpClient m_client;
};
