#pragma once

#include "SettingNames.h"

#include <vector>

/// One value that is to be written to a camera.
struct RegisterWrite
{
    Register id;
    int value = 0;

    friend bool operator==(const RegisterWrite& a, const RegisterWrite& b)
    {
        return a.id == b.id && a.value == b.value;
    }
};

/// Which values make a camera have what is wanted, in the order in which the window writes them:
/// framing first, because it sets the view, then the other settings, then the picture.
class WritePlan
{
    Q_DECLARE_TR_FUNCTIONS(WritePlan)

public:
    /// What has to be read before make().
    [[nodiscard]] static Registers needed(const SettingValues& wanted);

    /// @param current the values of needed()
    /// @return the writes; none when the camera has all that is wanted. A failure when what is
    /// wanted
    ///         excludes what the camera has.
    [[nodiscard]] static Result<std::vector<RegisterWrite>> make(const SettingValues& wanted,
                                                                 const RegisterValues& current);

    /// The writes that put back what @p done has changed, in reverse order: of two settings that
    /// exclude each other, one is switched off before the other is switched on.
    [[nodiscard]] static std::vector<RegisterWrite> undo(const std::vector<RegisterWrite>& done,
                                                         const RegisterValues& before);

    /// Every setting that resetting sets, with its value.
    [[nodiscard]] static SettingValues factoryDefaults();
};
