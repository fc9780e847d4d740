#include "DeviceInfoPage.h"

#include "STHTTPRequest.h"
#include "ui_DeviceInfoPage.h"
#include "UpdateCheck.h"

#include <QDebug>
#include <QFontMetrics>

namespace {

/// Texts come from a camera: what does not fit is cut at the end of the line and told by tool tip.
void showValue(QLabel* label, const QString& text)
{
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideRight, label->width()));
    label->setToolTip(label->text() == text ? QString() : text.toHtmlEscaped());
}

} // namespace

DeviceInfoPage::DeviceInfoPage(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::DeviceInfoPage>())
{
    ui->setupUi(this);
    connect(ui->btnUpgrade, &QPushButton::clicked, this, &DeviceInfoPage::slotNeedUpgrade);
}

DeviceInfoPage::~DeviceInfoPage() = default;

void DeviceInfoPage::setProductInfo(const DeviceWidgetInfo& info)
{
    m_device = info;
    ui->label->setStyleSheet(QStringLiteral("border-image: url(:/images/SVCbig.png);"));
    ui->labProductName->setText(info.name);
    showValue(ui->labSNNumber, info.sn);
    showValue(ui->labVersionNumber, QStringLiteral("V ") + info.deviceVersion);
    mBody = UpdateCheck::body(info.model, info.deviceVersion);
    qDebug().noquote() << "mBody =" << QString::fromStdString(mBody);
}

void DeviceInfoPage::slotNeedUpgrade()
{
    qDebug() << "slotNeedUpgrade";
    if (UpdateCheck::isConfigured()) {
        initHttpReq();
        return;
    }
    qDebug() << "this build knows no update service";
    emit sigShowToast(tr("Connecting… Please wait."));
}

/// The answers come on the networking library's thread and go on from there queued: the page is the
/// GUI thread's.
void DeviceInfoPage::initHttpReq()
{
    setAsking(true);
    auto request = std::make_shared<Brivane::STHTTPRequest>();
    request->url = UpdateCheck::url();
    request->body = mBody;
    request->onResponse = [this](const std::string& body) {
        const QString text = QString::fromStdString(body);
        qDebug() << text;
        const QJsonObject answer = UpdateCheck::getJsonObjectFromString(text);
        QMetaObject::invokeMethod(
            this, [this, answer] { takeAnswer(answer); }, Qt::QueuedConnection);
    };
    request->onError = [this](int code, const std::string& message) {
        qDebug() << code;
        qDebug() << QString::fromStdString(message);
        QMetaObject::invokeMethod(
            this,
            [this] {
                setAsking(false);
                emit sigShowToast(tr("Connecting… Please wait."));
            },
            Qt::QueuedConnection);
    };
    m_client.setExtraCaFile(UpdateCheck::caFile().toStdString());
    m_client.request(request);
}

void DeviceInfoPage::takeAnswer(const QJsonObject& answer)
{
    setAsking(false);
    mDownloadData = answer;
    if (!UpdateCheck::offersUpdate(mDownloadData)) {
        qDebug() << "Software is up to date";
        emit sigShowToast(tr("Software is up to date"));
        return;
    }
    qDebug() << "emit sigSetDownloadData";
    emit sigSetDownloadData(mDownloadData, m_device.name);
}

/// One question at a time: the service gives no answer faster when it is asked twice.
void DeviceInfoPage::setAsking(bool asking)
{
    ui->btnUpgrade->setEnabled(!asking);
    ui->btnUpgrade->setToolTip(asking ? tr("Connecting… Please wait.") : QString());
}
