#include "DeviceSettings.h"

#include <algorithm>

namespace {

constexpr bool isOrderedByEnumerator()
{
    for (std::size_t i = 0; i < DeviceSettings::kRows.size(); ++i) {
        if (static_cast<std::size_t>(DeviceSettings::kRows[i].setting) != i)
            return false;
    }
    return true;
}
static_assert(isOrderedByEnumerator(), "row() takes the enumerator as the index");

} // namespace

const DeviceSettingRow* DeviceSettings::findByReadCode(int readCode)
{
    const auto found =
        std::find_if(kRows.begin(), kRows.end(),
                     [readCode](const DeviceSettingRow& row) { return row.readCode == readCode; });
    return found == kRows.end() ? nullptr : &*found;
}
