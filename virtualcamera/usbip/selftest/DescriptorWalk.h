#pragma once

#include "core/Frame.h"

#include <vector>

namespace virtualcamera {

/// Splits a configuration into its descriptors by their lengths. Bytes that form no whole
/// descriptor are missing from the result, so compare the sum of the lengths.
std::vector<Bytes> splitDescriptors(const Bytes& configuration);

/// The descriptors from the interface (first setting 0) up to the next interface.
std::vector<Bytes> descriptorsOf(const std::vector<Bytes>& all, std::uint8_t interface,
                                 std::uint8_t alternate = 0);

/// The class-specific interface descriptors with this subtype.
std::vector<Bytes> withSubtype(const std::vector<Bytes>& all, std::uint8_t subtype);

std::size_t totalLength(const std::vector<Bytes>& descriptors);

} // namespace virtualcamera
