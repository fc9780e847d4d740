#pragma once

#include "CBaseRequest.h"

namespace Brivane {

#ifdef __GNUC__
#pragma GCC diagnostic push
// For the reason given at the base class.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// The message "ping". The library's interface has it, although the program sends no message.
class CPingRequest : public CBaseRequest
{
public:
    explicit CPingRequest(std::int32_t id);
};

#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

} // namespace Brivane
