#pragma once

#include <QString>

/// Where profiles and their assignments lie. The files of the user come before those of the site.
struct ProfileFolders
{
    struct Place
    {
        QString profiles;    ///< folder
        QString assignments; ///< file
    };

    Place user;
    Place site; ///< of all users of this computer

    [[nodiscard]] static ProfileFolders ofThisSystem();

private:
    /// Defined in ProfileFolders_<platform>.cpp.
    [[nodiscard]] static Place siteOfThisSystem();
};
