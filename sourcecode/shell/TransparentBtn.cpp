#include "TransparentBtn.h"

#include <QMouseEvent>

TransparentBtn::TransparentBtn(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_label(this)
{
    setObjectName(QStringLiteral("TransparentBtn"));
    setAccessibleName(tr("Grid"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(24, 24);
    m_label.setObjectName(QStringLiteral("label"));
    m_label.setFixedSize(24, 24);
    setLabelStyle(QStringLiteral("image: url(:/images/jiugongge.svg);"));
    m_label.installEventFilter(this);
}

bool TransparentBtn::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &m_label)
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        emit sigShowLine();
        return true;
    }
    return false;
}
