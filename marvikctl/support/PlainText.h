#pragma once

#include <QJsonValue>
#include <QString>

namespace PlainText {

/// A JSON value as indented text for people: a line for each member.
[[nodiscard]] QString of(const QJsonValue& value, int depth = 0);

} // namespace PlainText
