#pragma once

#include <cstdint>
#include <string>

namespace Brivane {

#ifdef __GNUC__
#pragma GCC diagnostic push
// The two operations are all the interface has: a destructor in its table would move them for who
// calls by position. Messages are destroyed as what they were made, never through this base.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// A message known by its number.
class CBaseRequest
{
public:
    /// The name is not kept.
    CBaseRequest(std::int32_t id, std::string name);

    virtual std::int32_t getMsgId();
    /// Always empty, whatever the name was.
    virtual std::string toString();

private:
    std::int32_t m_msgId;
};

#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

} // namespace Brivane
