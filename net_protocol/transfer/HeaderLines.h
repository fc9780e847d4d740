#pragma once

#include "STHTTPRequest.h"

class QNetworkRequest;

namespace Brivane {

/// Adds the extra header lines of a request in order.
/// @return false when a line is none, such as one with a line break in it, or is one by which the
///         library tells where a message ends and how it is encoded
[[nodiscard]] bool addHeaderLines(const STHTTPRequest::Headers& headers, QNetworkRequest& request);

} // namespace Brivane
