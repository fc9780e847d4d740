#pragma once

#include <QByteArray>
#include <QString>

/// A program that writes into a file beside it, "<name>.started", how it was started.
namespace TestInstaller {

/// The name contains a blank.
[[nodiscard]] QString name();
[[nodiscard]] QByteArray content();
/// The file's content after a start by name, without arguments.
[[nodiscard]] QByteArray startedWithoutArguments();

} // namespace TestInstaller
