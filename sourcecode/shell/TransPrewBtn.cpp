#include "TransPrewBtn.h"

#include <QMouseEvent>

TransPrewBtn::TransPrewBtn(QWidget* parent)
    : OverlayButton(QStringLiteral("TransPrewBtn"), tr("Preview"),
                    QStringLiteral("image: url(:/images/previewopen.svg);"), parent)
{
}

bool TransPrewBtn::eventFilter(QObject* watched, QEvent* event)
{
    if (!isLabel(watched))
        return OverlayButton::eventFilter(watched, event);
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
