#pragma once

#include "CHttpClient.h"
#include "DeviceWidgetInfo.h"

#include <functional>
#include <memory>
#include <QJsonObject>
#include <QWidget>
#include <string>

namespace Ui {
class DeviceInfoPage;
}

/// Shows picture, name, serial number and firmware version of the open camera. Its button asks the
/// update service for newer firmware.
class DeviceInfoPage : public QWidget
{
    Q_OBJECT

public:
    explicit DeviceInfoPage(QWidget* parent = nullptr);
    ~DeviceInfoPage() override;

    /// Shows @p info. An answer about another camera that is still to come is ignored from now on.
    void setProductInfo(const DeviceWidgetInfo& info);
    /// Ignores an answer that is still to come. Must be called when the page is left.
    void dropQuestion();

public slots:
    /// Asks the update service whether it has newer firmware for the camera.
    void slotNeedUpgrade();

signals:
    void sigUpgrade();
    /// The service's answer is an offer: any answer in which "needUpgrade" is not false.
    /// @param text name of the product
    void sigSetDownloadData(const QJsonObject& downloadData, const QString& text);
    void sigShowToast(const QString& text);

private:
    void initHttpReq();
    void takeAnswer(const QJsonObject& answer);
    void takeFailure();
    /// Calls @p take on the GUI thread, unless @p request is no longer the current one by then.
    void deliver(const std::weak_ptr<Brivane::STHTTPRequest>& request,
                 const std::function<void()>& take);
    void setAsking(bool asking);

    std::unique_ptr<Ui::DeviceInfoPage> ui;
    DeviceWidgetInfo m_device;
    std::string mBody;
    QJsonObject mDownloadData;
    std::shared_ptr<Brivane::STHTTPRequest> m_request; ///< null when no answer is expected
    /// The last member, so that it is destroyed first: its callbacks use the members above.
    Brivane::CHttpClient m_client;
};
