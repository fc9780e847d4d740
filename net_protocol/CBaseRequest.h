#pragma once

#include <cstdint>
#include <string>

namespace Brivane {

#ifdef __GNUC__
#pragma GCC diagnostic push
// The table of virtual functions holds these two operations only: a destructor would change their
// positions. Messages are never destroyed through this base.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// A message with a number. The library's interface has it, although the program sends no message.
class CBaseRequest
{
public:
    /// The name is not kept.
    CBaseRequest(std::int32_t id, std::string name);

    virtual std::int32_t getMsgId();
    /// Always empty.
    virtual std::string toString();

private:
    std::int32_t m_msgId;
};

#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

} // namespace Brivane
