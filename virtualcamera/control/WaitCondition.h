#pragma once

#include <string>

namespace virtualcamera {

class Camera;

/// A condition on a camera, such as "onbus" or "frames>=10".
class WaitCondition
{
public:
    /// Throws std::invalid_argument.
    static WaitCondition parse(const std::string& text);
    bool holds(const Camera& camera) const;

private:
    enum class Comparison { AtLeast, AtMost, Equal };

    std::string m_quantity;
    Comparison m_comparison = Comparison::Equal;
    long m_value = 0;
};

} // namespace virtualcamera
