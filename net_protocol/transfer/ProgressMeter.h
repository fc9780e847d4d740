#pragma once

#include <cstdint>
#include <optional>

namespace Brivane {

/// Percentages of a download, each told once and in ascending order.
class ProgressMeter
{
public:
    /// @param total length of the whole, negative when it is not known
    /// @return the percentage when there is a new one to tell
    std::optional<std::int32_t> advance(std::int64_t received, std::int64_t total);
    /// All of it is there.
    std::optional<std::int32_t> finish();

private:
    std::optional<std::int32_t> tell(std::int32_t percent);

    std::int32_t m_told = -1;
};

} // namespace Brivane
