#pragma once

/// System resources that this process uses.
namespace ProcessUsage {

[[nodiscard]] int openDescriptors();
[[nodiscard]] int threads();
/// Bytes that are allocated on the heap; 0 where a sanitizer manages the heap.
[[nodiscard]] long heapBytes();

} // namespace ProcessUsage
