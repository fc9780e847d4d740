#pragma once

/// What this process holds of the system.
namespace ProcessUsage {

[[nodiscard]] int openDescriptors();
[[nodiscard]] int threads();
/// Bytes that are allocated on the heap; 0 where a sanitizer keeps the heap itself.
[[nodiscard]] long heapBytes();

} // namespace ProcessUsage
