#pragma once

namespace Brivane {

/// Waits until what was written to the open file is on the disk.
/// @return false when that failed; true also when the file system has no such operation
[[nodiscard]] bool syncToDisk(int fileDescriptor);

} // namespace Brivane
