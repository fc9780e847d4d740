#pragma once

#include <functional>
#include <initializer_list>
#include <QKeySequence>

class QAbstractButton;
class QWidget;

/// Keys that work wherever the focus is, as long as no dialog is open: the pages themselves drop
/// the keys that no control takes.
namespace Shortcuts {

/// @p keys press @p button while it is enabled and @p owner can be seen. The first of them stands
/// in the tool tip of the button.
void press(QWidget* owner, QAbstractButton* button, std::initializer_list<QKeySequence> keys);
/// The same while the button itself can be seen.
void press(QAbstractButton* button, std::initializer_list<QKeySequence> keys);

/// @p key calls @p action while @p owner can be seen.
void call(QWidget* owner, const QKeySequence& key, const std::function<void()>& action);

/// "Back (Alt+Left)", with the keys' names on this platform.
[[nodiscard]] QString named(const QString& text, const QKeySequence& key);

} // namespace Shortcuts
