#pragma once

#include "../VideoMode.h"

#include <vector>

class V4l2Node;

/// The streaming modes of a camera in the formats that the preview understands. A list
/// without an end is cut off.
[[nodiscard]] std::vector<VideoMode> listVideoModes(const V4l2Node& node);
