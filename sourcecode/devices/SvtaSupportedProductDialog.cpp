#include "SvtaSupportedProductDialog.h"

#include "ui_SvtaSupportedProductDialog.h"

#include <QKeyEvent>
#include <QLabel>

namespace {

constexpr int kLeft = 20;
constexpr int kTitleHeight = 28;
constexpr int kGapBelowGroup = 18;
constexpr int kGapBelowProduct = 8;
constexpr QSize kPanelSize(320, 100);

void addPanel(QWidget* parent, const CameraModel& model, int top)
{
    auto* panel = new QWidget(parent);
    panel->setProperty("productPanel", true);
    panel->setGeometry(QRect(QPoint(kLeft, top), kPanelSize));
    auto* picture = new QLabel(panel);
    picture->setGeometry(16, 14, 96, 72);
    picture->setStyleSheet(
        QStringLiteral("border-image: url(%1);").arg(QLatin1String(model.cardPicture)));
    auto* name = new QLabel(panel);
    name->setGeometry(128, 38, 190, 24);
    name->setTextFormat(Qt::PlainText);
    name->setText(QString::fromUtf8(model.productName));
    name->setStyleSheet(QStringLiteral("font-size: 14px;"));
}

} // namespace

SvtaSupportedProductDialog::SvtaSupportedProductDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::SvtaSupportedProductDialog>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    ui->labUsbCamera->move(kLeft, 6);
    const int end = addProducts(CameraModel::Group::UsbCamera, ui->labUsbCamera->y());
    ui->labBiasedCamera->move(kLeft, end);
    ui->scrollAreaWidgetContents->setMinimumHeight(
        addProducts(CameraModel::Group::DesktopDevice, ui->labBiasedCamera->y()));
    connect(ui->btnClose, &QPushButton::clicked, this, &QWidget::hide);
}

SvtaSupportedProductDialog::~SvtaSupportedProductDialog() = default;

void SvtaSupportedProductDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QDialog::keyPressEvent(event);
}

/// Adds the products of a group whose title begins at @p top; returns where the next group begins.
int SvtaSupportedProductDialog::addProducts(CameraModel::Group group, int top)
{
    int next = top + kTitleHeight;
    for (const CameraModel& model : CameraModels::rows()) {
        if (model.group != group)
            continue;
        addPanel(ui->scrollAreaWidgetContents, model, next);
        next += kPanelSize.height() + kGapBelowProduct;
    }
    return next - kGapBelowProduct + kGapBelowGroup;
}
