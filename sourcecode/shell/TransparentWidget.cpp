#include "TransparentWidget.h"

#include <QBitmap>
#include <QPixmap>

TransparentWidget::TransparentWidget(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_label(this)
{
    setObjectName(QStringLiteral("TransparentWidget"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixedSize(360, 202);
    m_label.setObjectName(QStringLiteral("label"));
    m_label.setFixedSize(360, 202);
    m_label.setStyleSheet(QStringLiteral("image: url(:/images/line.png);"));
}

void TransparentWidget::showEvent(QShowEvent* event)
{
    // Without a compositor, transparent pixels of a window are black. The mask leaves only the
    // lines. Not in the constructor: most starts of the program never show the lines.
    if (mask().isEmpty())
        setMask(QPixmap(QStringLiteral(":/images/line.png")).mask());
    QWidget::showEvent(event);
}
