#pragma once

#include "Frame.h"

#include <optional>

namespace virtualcamera {

/// A firmware image of the virtual camera: "MVFW", the number of version bytes, the version bytes,
/// a little-endian checksum of all other bytes, then the payload.
struct DeviceFirmware
{
    Bytes version;
    Bytes payload;

    Bytes encode() const;
    /// No value when the bytes are not an intact image.
    static std::optional<DeviceFirmware> decode(const Bytes& bytes);
};

} // namespace virtualcamera
