#pragma once

#include <cstdint>
#include <optional>

namespace Brivane {

/// The percentages of a download to report, each once and in ascending order.
class ProgressMeter
{
public:
    /// @param total length of the download, negative when it is not known
    /// @return the percentage to report, if it is a new one
    std::optional<std::int32_t> advance(std::int64_t received, std::int64_t total);
    /// The download is complete.
    std::optional<std::int32_t> finish();

private:
    std::optional<std::int32_t> report(std::int32_t percent);

    std::int32_t m_reported = -1;
};

} // namespace Brivane
