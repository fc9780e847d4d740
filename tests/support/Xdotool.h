#pragma once

#include <QStringList>

/// The tool through which tests act as a user of the desktop.
namespace Xdotool {

/// Returns when the tool has ended; the test ends if the tool fails.
void run(const QStringList& arguments);

} // namespace Xdotool
