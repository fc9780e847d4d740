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
    return report(static_cast<std::int32_t>(std::max<std::int64_t>(received, 0) * kWhole / total));
}

std::optional<std::int32_t> ProgressMeter::finish()
{
    return report(kWhole);
}

std::optional<std::int32_t> ProgressMeter::report(std::int32_t percent)
{
    if (percent <= m_reported)
        return {};
    m_reported = percent;
    return percent;
}

} // namespace Brivane
