#include "CPingRequest.h"

namespace Brivane {

CPingRequest::CPingRequest(std::int32_t id)
    : CBaseRequest(id, "ping")
{
}

} // namespace Brivane
