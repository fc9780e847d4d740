#include "DeviceInfoPage.h"

#include "CameraModels.h"
#include "LogCategories.h"
#include "STHTTPRequest.h"
#include "ui_DeviceInfoPage.h"
#include "UpdateCheck.h"

#include <QFontMetrics>

namespace {

/// The text comes from a camera and can have any length. A text that does not fit is shortened, and
/// a tool tip shows the whole of it.
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
    ui->labProductName->setText(QString::fromUtf8(CameraModels::withModelText({}).productName));
    connect(ui->btnUpgrade, &QPushButton::clicked, this, &DeviceInfoPage::slotNeedUpgrade);
}

DeviceInfoPage::~DeviceInfoPage() = default;

void DeviceInfoPage::setProductInfo(const DeviceWidgetInfo& info)
{
    if (info.hidPath != m_device.hidPath || info.sn != m_device.sn || info.model != m_device.model)
        dropQuestion();
    m_device = info;
    setAsking(m_request != nullptr);
    const CameraModel& model = CameraModels::withModelText(info.model);
    ui->label->setStyleSheet(
        QStringLiteral("border-image: url(%1);").arg(QLatin1String(model.largePicture)));
    ui->labProductName->setText(info.name);
    showValue(ui->labSNNumber, info.sn);
    showValue(ui->labVersionNumber, QStringLiteral("V ") + info.deviceVersion);
    mBody = UpdateCheck::body(info.model, info.deviceVersion);
    qCDebug(updateLog).noquote() << "mBody =" << QString::fromStdString(mBody);
}

void DeviceInfoPage::slotNeedUpgrade()
{
    qCDebug(updateLog) << "slotNeedUpgrade";
    if (UpdateCheck::isConfigured()) {
        initHttpReq();
        return;
    }
    qCDebug(updateLog) << "this build has no update service";
}

/// The callbacks run on the networking library's thread. They pass the result to the GUI thread
/// through queued calls, because widgets may be used there only.
void DeviceInfoPage::initHttpReq()
{
    setAsking(true);
    auto request = std::make_shared<Brivane::STHTTPRequest>();
    m_request = request;
    request->url = UpdateCheck::url();
    request->body = mBody;
    const std::weak_ptr<Brivane::STHTTPRequest> asked = request;
    request->onResponse = [this, asked](const std::string& body) {
        const QString text = QString::fromStdString(body);
        qCDebug(updateLog) << text;
        const QJsonObject answer = UpdateCheck::getJsonObjectFromString(text);
        deliver(asked, [this, answer] { takeAnswer(answer); });
    };
    request->onError = [this, asked](int code, const std::string& message) {
        qCDebug(updateLog) << code;
        qCDebug(updateLog) << QString::fromStdString(message);
        deliver(asked, [this] { takeFailure(); });
    };
    m_client.setExtraCaFile(UpdateCheck::caFile().toStdString());
    m_client.request(request);
}

void DeviceInfoPage::deliver(const std::weak_ptr<Brivane::STHTTPRequest>& request,
                             const std::function<void()>& take)
{
    QMetaObject::invokeMethod(
        this,
        [this, request, take] {
            if (!m_request || m_request != request.lock())
                return;
            m_request.reset();
            setAsking(false);
            take();
        },
        Qt::QueuedConnection);
}

void DeviceInfoPage::dropQuestion()
{
    if (!m_request)
        return;
    m_request->cancel();
    m_request.reset();
    setAsking(false);
}

void DeviceInfoPage::takeFailure()
{
    emit sigShowToast(tr("Connecting… Please wait."));
}

void DeviceInfoPage::takeAnswer(const QJsonObject& answer)
{
    mDownloadData = answer;
    if (!UpdateCheck::offersUpdate(mDownloadData)) {
        qCDebug(updateLog) << "Software is up to date";
        emit sigShowToast(tr("Software is up to date"));
        return;
    }
    qCDebug(updateLog) << "emit sigSetDownloadData";
    emit sigSetDownloadData(mDownloadData, m_device.name);
}

/// Only one request runs at a time: a second one would not bring the answer earlier.
void DeviceInfoPage::setAsking(bool asking)
{
    QString why;
    if (!UpdateCheck::isConfigured())
        why = tr("This build has no update service.");
    else if (asking)
        why = tr("Connecting… Please wait.");
    ui->btnUpgrade->setEnabled(why.isEmpty());
    ui->btnUpgrade->setToolTip(why);
    ui->btnUpgrade->setAccessibleDescription(why);
    ui->btnUpgrade->setText(UpdateCheck::isConfigured() ? tr("Firmware Update")
                                                        : tr("No update service"));
}
