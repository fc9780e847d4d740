#include "ProfileFolders.h"

ProfileFolders::Place ProfileFolders::siteOfThisSystem()
{
    return {QStringLiteral("/etc/marviktools/profiles.d"),
            QStringLiteral("/etc/marviktools/assignments.json")};
}
