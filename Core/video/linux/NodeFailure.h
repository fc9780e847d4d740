#pragma once

#include "../PreviewFailure.h"

/// Why a device node cannot be used.
/// @param error the errno of the call that failed
[[nodiscard]] PreviewFailure nodeFailure(const QString& node, int error);
