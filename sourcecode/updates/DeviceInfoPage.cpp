#include "DeviceInfoPage.h"

#include "ui_DeviceInfoPage.h"

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
}

void DeviceInfoPage::slotNeedUpgrade()
{
    qDebug() << "slotNeedUpgrade";
    // This build knows no update service to ask; the user is told what an unreachable one tells.
    emit sigShowToast(tr("Connecting… Please wait."));
}
