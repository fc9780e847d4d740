#pragma once

#include "Failure.h"

#include <QString>

/// Why an interface of a camera cannot be opened, in words. Defined in NodeAccess_<platform>.cpp.
namespace NodeAccess {

enum class Interface { Control, Video };

/// Tries to open the interface by itself and says what the system reports.
/// @param node on Linux the device node, on Windows the path of the interface
[[nodiscard]] Failure explain(const QString& node, Interface which);

} // namespace NodeAccess
