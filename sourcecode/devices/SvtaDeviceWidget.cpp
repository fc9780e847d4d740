#include "SvtaDeviceWidget.h"

#include "CameraModels.h"
#include "LogCategories.h"
#include "Style.h"
#include "ui_SvtaDeviceWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTextDocument>

SvtaDeviceWidget::SvtaDeviceWidget(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::SvtaDeviceWidget>())
{
    ui->setupUi(this);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    ui->cardWidget->setAttribute(Qt::WA_Hover);
    installEventFilter(this);
}

SvtaDeviceWidget::~SvtaDeviceWidget() = default;

void SvtaDeviceWidget::setData(const DeviceWidgetInfo& info)
{
    qCDebug(hotplugLog) << "info.path" << info.path << "mDeviceWidgetInfo.path"
                        << mDeviceWidgetInfo.path;
    mDeviceWidgetInfo = info;

    const bool connected = info.status == 1;
    const QString state = connected ? tr("Connected") : tr("Failed");
    const QString colour = Style::colour(connected ? "connected" : "failed");
    ui->labPicture->setStyleSheet(
        QStringLiteral("border-image:url(%1)")
            .arg(QLatin1String(CameraModels::withModelText(info.model).cardPicture)));
    ui->labName->setText(info.name);
    ui->labStatus->setText(state);
    ui->labStatus->setStyleSheet(
        QStringLiteral("font-family: \"Microsoft YaHei UI\"; font-size: 14px; font-weight: 400; "
                       "border: none; background: transparent; color: %1;")
            .arg(colour));
    setAccessibleName(info.name + QStringLiteral(", ") + state);
    describe();
}

void SvtaDeviceWidget::setSerialNumber(const QString& sn)
{
    mDeviceWidgetInfo.sn = sn;
    describe();
}

void SvtaDeviceWidget::describe()
{
    QStringList lines;
    if (mDeviceWidgetInfo.status != 1)
        lines << tr("The camera does not answer. Unplug it and plug it in again.");
    if (!mDeviceWidgetInfo.sn.isEmpty())
        lines << tr("Serial number: %1").arg(mDeviceWidgetInfo.sn);
    const QString text = lines.join(QLatin1Char('\n'));
    setAccessibleDescription(text);
    // The serial number is what a camera reports; it may look like markup.
    setToolTip(text.isEmpty() ? QString() : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal));
}

bool SvtaDeviceWidget::eventFilter(QObject* watched, QEvent* event)
{
    const bool press = event->type() == QEvent::MouseButtonPress;
    const bool release = event->type() == QEvent::MouseButtonRelease;
    if (watched == this && (press || release) &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        if (press) {
            qCDebug(hotplugLog) << "MouseButtonPress";
        } else {
            qCDebug(hotplugLog) << "MouseButtonRelease";
            emit sigDeviceWidgetClicked(mDeviceWidgetInfo);
        }
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void SvtaDeviceWidget::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        emit sigDeviceWidgetClicked(mDeviceWidgetInfo);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}
