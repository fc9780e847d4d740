#include "TransparentBtn.h"

#include <QMouseEvent>

TransparentBtn::TransparentBtn(QWidget* parent)
    : OverlayButton(QStringLiteral("TransparentBtn"), tr("Grid"),
                    QStringLiteral("image: url(:/images/jiugongge.svg);"), parent)
{
}

bool TransparentBtn::eventFilter(QObject* watched, QEvent* event)
{
    if (!isLabel(watched))
        return OverlayButton::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        emit sigShowLine();
        return true;
    }
    return false;
}
