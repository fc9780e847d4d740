#include "WaitCondition.h"

#include "Camera.h"
#include "CameraOptions.h"

#include <climits>
#include <map>
#include <stdexcept>

namespace virtualcamera {

namespace {

using Quantity = long (*)(const Camera&);

const std::map<std::string, Quantity>& quantities()
{
    static const std::map<std::string, Quantity> map{
        {"onbus", [](const Camera& c) { return c.onBus ? 1L : 0L; }},
        {"offbus", [](const Camera& c) { return c.onBus ? 0L : 1L; }},
        {"streaming", [](const Camera& c) { return c.stream().streaming ? 1L : 0L; }},
        {"idle", [](const Camera& c) { return c.stream().streaming ? 0L : 1L; }},
        {"frames", [](const Camera& c) { return static_cast<long>(c.stream().frames); }},
        {"requests", [](const Camera& c) { return static_cast<long>(c.device.log().total()); }},
        {"violations",
         [](const Camera& c) { return static_cast<long>(c.device.log().violations()); }},
        {"hid", [](const Camera& c) { return static_cast<long>(c.handles().hid); }},
        {"video", [](const Camera& c) { return static_cast<long>(c.handles().video); }},
        {"hidtotal", [](const Camera& c) { return static_cast<long>(c.handles().hidTotal); }},
        {"videototal", [](const Camera& c) { return static_cast<long>(c.handles().videoTotal); }},
        {"connections", [](const Camera& c) { return static_cast<long>(c.connection); }},
    };
    return map;
}

} // namespace

WaitCondition WaitCondition::parse(const std::string& text)
{
    WaitCondition condition;
    const std::size_t end = text.find_first_of("<>=");
    condition.m_quantity = text.substr(0, end);
    if (quantities().count(condition.m_quantity) == 0)
        throw std::invalid_argument("unknown condition: " + text);
    if (end == std::string::npos) {
        condition.m_value = 1;
        return condition;
    }
    std::size_t valueAt = end + 2;
    if (text.compare(end, 2, ">=") == 0)
        condition.m_comparison = Comparison::AtLeast;
    else if (text.compare(end, 2, "<=") == 0)
        condition.m_comparison = Comparison::AtMost;
    else if (text[end] == '=')
        valueAt = text.compare(end, 2, "==") == 0 ? end + 2 : end + 1;
    else
        throw std::invalid_argument("compare with >=, <= or =: " + text);
    condition.m_value = parseInteger(text.substr(valueAt), LONG_MIN, LONG_MAX);
    return condition;
}

bool WaitCondition::holds(const Camera& camera) const
{
    const long value = quantities().at(m_quantity)(camera);
    switch (m_comparison) {
    case Comparison::AtLeast:
        return value >= m_value;
    case Comparison::AtMost:
        return value <= m_value;
    case Comparison::Equal:
        break;
    }
    return value == m_value;
}

} // namespace virtualcamera
