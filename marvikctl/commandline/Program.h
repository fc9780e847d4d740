#pragma once

#include <QStringList>

/// The program without its main(): reads the command line, runs the command and prints its report.
namespace Program {

/// @param arguments with the program's name first
/// @return the exit status
[[nodiscard]] int run(const QStringList& arguments);

} // namespace Program
