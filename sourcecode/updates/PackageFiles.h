#pragma once

#include <QDateTime>
#include <QString>

/// The package files that the program has put into the user's cache directory. Their names are kept
/// in the program's settings, so that no other file of that directory is ever removed. GUI thread.
namespace PackageFiles {

/// A package that is not needed any more is removed when it is older than this number of days.
constexpr int kDaysKept = 7;

/// Records a file before it is downloaded.
void add(const QString& path);
/// Removes the file and its record.
void remove(const QString& path);
/// Removes recorded files that are older than kDaysKept at @p now, and what an interrupted download
/// of them has left.
void removeOld(const QDateTime& now);

} // namespace PackageFiles
