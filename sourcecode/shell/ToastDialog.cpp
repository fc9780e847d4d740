#include "ToastDialog.h"

#include "ui_ToastDialog.h"

#include <algorithm>
#include <QDebug>
#include <QFontMetrics>

namespace {

constexpr int kMaxLabelWidth = 360;
constexpr int kHorizontalRoom = 64;
constexpr int kVerticalRoom = 26;
constexpr int kDefaultMs = 1500;

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
    ui->ContentLab->ensurePolished(); // the style sheet decides the font
    const int wid = QFontMetrics(ui->ContentLab->font()).horizontalAdvance(text);
    qDebug() << "wid =" << wid;
    ui->ContentLab->setFixedWidth(std::min(wid, kMaxLabelWidth));
    qDebug() << "ui->ContentLab->width() =" << ui->ContentLab->width();
    ui->ContentLab->setText(text);
    ui->ContentLab->adjustSize();

    const int width = ui->ContentLab->width() + kHorizontalRoom;
    const int height = ui->ContentLab->height() + kVerticalRoom;
    qDebug() << "width =" << width << "height =" << height;
    const QRect parent = parentWidget() ? parentWidget()->geometry() : geometry();
    const int x = parent.x() + (parent.width() - kHorizontalRoom - ui->ContentLab->width()) / 2;
    const int y = parent.y() + (parent.height() - height) / 2;
    qDebug() << "x =" << x << "y =" << y;
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
