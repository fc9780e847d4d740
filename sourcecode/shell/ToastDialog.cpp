#include "ToastDialog.h"

#include "LogCategories.h"
#include "ui_ToastDialog.h"

#include <algorithm>
#include <QFontMetricsF>
#include <QtMath>

namespace {

constexpr int kMaxLabelWidth = 360;
constexpr int kHorizontalRoom = 64;
constexpr int kVerticalRoom = 26;
constexpr int kDefaultMs = 1500;

/// The width that @p text needs so that a label does not break it. A fraction of a pixel counts,
/// and so does the part of the last character that lies beyond its advance.
int widthInOneLine(const QString& text, const QFontMetricsF& metrics)
{
    const qreal overhang =
        text.isEmpty() ? 0 : std::max(qreal(0), -metrics.rightBearing(text.back()));
    return qCeil(metrics.horizontalAdvance(text) + overhang);
}

} // namespace

ToastDialog::ToastDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::ToastDialog>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    raise();
    connect(&m_timer, &QTimer::timeout, this, &ToastDialog::finish);
}

ToastDialog::~ToastDialog() = default;

void ToastDialog::Start(const QString& text, int msec)
{
    ui->ContentLab->ensurePolished(); // the style sheet sets the font
    const int wid = widthInOneLine(text, QFontMetricsF(ui->ContentLab->font()));
    qCDebug(shellLog) << "wid =" << wid;
    ui->ContentLab->setFixedWidth(std::min(wid, kMaxLabelWidth));
    qCDebug(shellLog) << "ui->ContentLab->width() =" << ui->ContentLab->width();
    ui->ContentLab->setText(text);
    ui->ContentLab->adjustSize();

    const int width = ui->ContentLab->width() + kHorizontalRoom;
    const int height = ui->ContentLab->height() + kVerticalRoom;
    qCDebug(shellLog) << "width =" << width << "height =" << height;
    const QRect parent = parentWidget() ? parentWidget()->geometry() : geometry();
    const int x = parent.x() + (parent.width() - kHorizontalRoom - ui->ContentLab->width()) / 2;
    const int y = parent.y() + (parent.height() - height) / 2;
    qCDebug(shellLog) << "x =" << x << "y =" << y;
    setGeometry(x, y, width, height);
    ui->bgWidget->setGeometry(0, 0, width, height);
    ui->ContentLab->move(kHorizontalRoom / 2, kVerticalRoom / 2);
    setAccessibleName(text);

    m_timer.start(msec < 1 ? kDefaultMs : msec);
    m_running = true;
}

void ToastDialog::finish()
{
    m_timer.stop();
    m_running = false;
    hide();
    emit sigClose();
}
