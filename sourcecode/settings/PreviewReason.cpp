#include "PreviewReason.h"

#include <QAccessible>

namespace {

constexpr int kMargin = 8; ///< above and below the text together

} // namespace

PreviewReason::PreviewReason(QWidget* parent)
    : QLabel(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextFormat(Qt::PlainText); // a program names itself
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
}

void PreviewReason::say(const QString& reason)
{
    setText(reason);
    if (reason.isEmpty()) {
        hide();
        return;
    }
    ensurePolished(); // the font is the style sheet's
    const int height = heightForWidth(width()) + kMargin;
    setGeometry(x(), geometry().bottom() + 1 - height, width(), height);
    show();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}
