#pragma once

#include <QString>
#include <QStringList>

namespace NearestWord {

/// How many letters must be added, removed or replaced, or neighbours swapped, to make @p b of @p
/// a.
[[nodiscard]] int distance(const QString& a, const QString& b);

/// The word of @p words that @p word was probably meant to be; empty when none is near enough.
[[nodiscard]] QString in(const QStringList& words, const QString& word);

} // namespace NearestWord
