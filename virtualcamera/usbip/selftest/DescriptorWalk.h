#pragma once

#include "core/Frame.h"

#include <vector>

namespace virtualcamera {

/// Splits a configuration into its descriptors by their lengths. What does not add up is missing
/// from the result, so compare the sum.
std::vector<Bytes> splitDescriptors(const Bytes& configuration);

/// The descriptors from the interface (first setting 0) up to the next interface.
std::vector<Bytes> descriptorsOf(const std::vector<Bytes>& all, std::uint8_t interface,
                                 std::uint8_t alternate = 0);

/// Those of a class interface with this subtype.
std::vector<Bytes> withSubtype(const std::vector<Bytes>& all, std::uint8_t subtype);

std::size_t totalLength(const std::vector<Bytes>& descriptors);

} // namespace virtualcamera
