#pragma once

namespace Brivane {

/// Waits until what was written to the open file is on the disk.
/// @return false when the disk did not take it; true also where a disk cannot be asked
[[nodiscard]] bool syncToDisk(int fileDescriptor);

} // namespace Brivane
