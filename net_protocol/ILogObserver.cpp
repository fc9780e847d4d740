#include "ILogObserver.h"

namespace Brivane {

ILogObserver::ILogObserver() = default;

ILogObserver::~ILogObserver() = default;

void ILogObserver::setLogLevel(std::int32_t level)
{
    m_level = level;
}

std::int32_t ILogObserver::getLogLevel() const
{
    return m_level;
}

} // namespace Brivane
