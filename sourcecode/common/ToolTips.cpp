#include "ToolTips.h"

#include "Style.h"

#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

namespace {

const char* const kStyle =
    "QToolTip { font-family: \"Microsoft YaHei UI\", \"Noto Sans CJK SC\"; font-size: 12px;"
    " background-color: @surface; color: @text; border: 1px solid @panel-line; padding: 3px; }";

} // namespace

ToolTips::ToolTips(QObject* parent)
    : QObject(parent)
{
    m_look.setStyleSheet(Style::sheet(kStyle));
    qApp->installEventFilter(this);
}

ToolTips::~ToolTips() = default;

bool ToolTips::eventFilter(QObject* watched, QEvent* event)
{
    const auto* widget =
        event->type() == QEvent::ToolTip ? qobject_cast<QWidget*>(watched) : nullptr;
    // A widget without a tool tip leaves the event to Qt, which asks its parent next.
    if (!widget || widget->toolTip().isEmpty())
        return QObject::eventFilter(watched, event);
    show(*widget, static_cast<QHelpEvent*>(event)->globalPos());
    return true;
}

void ToolTips::show(const QWidget& widget, const QPoint& position)
{
    // A tool tip of the same text elsewhere is a new one to Qt only if it is outside of the area.
    const QRect area(m_look.mapFromGlobal(widget.mapToGlobal(QPoint())), widget.size());
    QToolTip::showText(position, widget.toolTip(), &m_look, area, widget.toolTipDuration());
}
