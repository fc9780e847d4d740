#pragma once

#include <QByteArray>
#include <QString>

namespace JsonLines {

/// The line, from 1, of a position in a text.
[[nodiscard]] int at(const QByteArray& text, int position);
/// The line of the first member @p key of a JSON text; 1 when it is not found.
[[nodiscard]] int ofKey(const QByteArray& text, const QString& key);

} // namespace JsonLines
