#pragma once

#include "core/Frame.h"

#include <initializer_list>

namespace virtualcamera {

/// Appends numbers to bytes, in the byte order of USB.
class ByteWriter
{
public:
    ByteWriter& byte(unsigned value)
    {
        m_bytes.push_back(static_cast<std::uint8_t>(value & 0xFFU));
        return *this;
    }
    ByteWriter& word(unsigned value) { return byte(value).byte(value >> 8U); }
    ByteWriter& doubleWord(std::uint32_t value) { return word(value).word(value >> 16U); }
    ByteWriter& bytes(std::initializer_list<unsigned> values)
    {
        for (const unsigned value : values)
            byte(value);
        return *this;
    }
    ByteWriter& append(const Bytes& more)
    {
        m_bytes.insert(m_bytes.end(), more.begin(), more.end());
        return *this;
    }
    Bytes take() { return std::move(m_bytes); }

private:
    Bytes m_bytes;
};

} // namespace virtualcamera
