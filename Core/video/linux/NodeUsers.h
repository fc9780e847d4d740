#pragma once

#include <QStringList>

/// The names of the other programs that have a device node open, as far as this user may know them;
/// at most two.
[[nodiscard]] QStringList programsThatUse(const QString& node);
