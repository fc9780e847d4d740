#include "ProgressMeter.h"

#include <algorithm>

namespace Brivane {

namespace {

constexpr std::int32_t kWhole = 100;

} // namespace

std::optional<std::int32_t> ProgressMeter::advance(std::int64_t received, std::int64_t total)
{
    if (total < 0)
        return {};
    if (received >= total)
        return finish();
    return tell(static_cast<std::int32_t>(std::max<std::int64_t>(received, 0) * kWhole / total));
}

std::optional<std::int32_t> ProgressMeter::finish()
{
    return tell(kWhole);
}

std::optional<std::int32_t> ProgressMeter::tell(std::int32_t percent)
{
    if (percent <= m_told)
        return {};
    m_told = percent;
    return percent;
}

} // namespace Brivane
