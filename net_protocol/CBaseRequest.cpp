#include "CBaseRequest.h"

namespace Brivane {

CBaseRequest::CBaseRequest(std::int32_t id, std::string /*name*/)
    : m_msgId(id)
{
}

std::int32_t CBaseRequest::getMsgId()
{
    return m_msgId;
}

std::string CBaseRequest::toString()
{
    return {};
}

} // namespace Brivane
