#pragma once

#include <QByteArray>
#include <QString>

/// A program of the platform that tells in a file beside it, "<name>.started", how it was started.
namespace TestInstaller {

/// Has a blank.
[[nodiscard]] QString name();
[[nodiscard]] QByteArray content();
/// What the file says of a start by its name alone.
[[nodiscard]] QByteArray startedWithoutArguments();

} // namespace TestInstaller
