#pragma once

#include "CBaseRequest.h"

namespace Brivane {

#ifdef __GNUC__
#pragma GCC diagnostic push
// For the reason given at the base.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// The message "ping".
class CPingRequest : public CBaseRequest
{
public:
    explicit CPingRequest(std::int32_t id);
};

#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

} // namespace Brivane
