#include "TransPrewBtn.h"

#include <QMouseEvent>

TransPrewBtn::TransPrewBtn(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_label(this)
{
    setObjectName(QStringLiteral("TransPrewBtn"));
    setAccessibleName(tr("Preview"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(24, 24);
    m_label.setObjectName(QStringLiteral("label"));
    m_label.setFixedSize(24, 24);
    setLabelStyle(QStringLiteral("image: url(:/images/previewopen.svg);"));
    m_label.installEventFilter(this);
}

bool TransPrewBtn::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &m_label)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            emit sigHandleCapture();
        break;
    case QEvent::Enter:
        emit sigShowPreviewTip();
        break;
    case QEvent::Leave:
        emit sigHidePreviewTip();
        break;
    default:
        break;
    }
    return false;
}
