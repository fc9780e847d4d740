#include "DescriptorWalk.h"

namespace virtualcamera {

std::vector<Bytes> splitDescriptors(const Bytes& configuration)
{
    std::vector<Bytes> list;
    std::size_t at = 0;
    while (at < configuration.size()) {
        const std::size_t length = configuration[at];
        if (length < 2 || at + length > configuration.size())
            break;
        const auto from = configuration.begin() + static_cast<std::ptrdiff_t>(at);
        list.emplace_back(from, from + static_cast<std::ptrdiff_t>(length));
        at += length;
    }
    return list;
}

std::vector<Bytes> descriptorsOf(const std::vector<Bytes>& all, std::uint8_t interface,
                                 std::uint8_t alternate)
{
    std::vector<Bytes> list;
    bool inside = false;
    for (const Bytes& each : all) {
        if (each[1] == 4)
            inside = each[2] == interface && each[3] == alternate;
        if (inside)
            list.push_back(each);
    }
    return list;
}

std::vector<Bytes> withSubtype(const std::vector<Bytes>& all, std::uint8_t subtype)
{
    std::vector<Bytes> list;
    for (const Bytes& each : all)
        if (each[1] == 0x24 && each[2] == subtype)
            list.push_back(each);
    return list;
}

std::size_t totalLength(const std::vector<Bytes>& descriptors)
{
    std::size_t sum = 0;
    for (const Bytes& each : descriptors)
        sum += each.size();
    return sum;
}

} // namespace virtualcamera
