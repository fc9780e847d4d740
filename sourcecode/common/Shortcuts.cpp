#include "Shortcuts.h"

#include <QAbstractButton>
#include <QShortcut>

void Shortcuts::press(QWidget* owner, QAbstractButton* button,
                      std::initializer_list<QKeySequence> keys)
{
    for (const QKeySequence& key : keys) {
        auto* shortcut = new QShortcut(key, owner);
        QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
    }
    const QString text = button->toolTip().isEmpty() ? button->text() : button->toolTip();
    button->setToolTip(named(text, *keys.begin()));
}

void Shortcuts::press(QAbstractButton* button, std::initializer_list<QKeySequence> keys)
{
    press(button, button, keys);
}

void Shortcuts::call(QWidget* owner, const QKeySequence& key, const std::function<void()>& action)
{
    auto* shortcut = new QShortcut(key, owner);
    QObject::connect(shortcut, &QShortcut::activated, owner, action);
}

QString Shortcuts::named(const QString& text, const QKeySequence& key)
{
    return QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText));
}
