#pragma once

#include <QString>

/// A process without the rights of an administrator, like each that a user starts who has not
/// confirmed an elevation.
namespace LimitedProcess {

/// Runs @p command and waits for it.
/// @return its exit code; -1 when it cannot be run
int run(const QString& command);

} // namespace LimitedProcess
