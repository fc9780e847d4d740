#include "ProfileFolders.h"

#include <QDir>

ProfileFolders::Place ProfileFolders::siteOfThisSystem()
{
    const QString folder =
        QDir::fromNativeSeparators(qEnvironmentVariable("ProgramData", "C:/ProgramData")) +
        QStringLiteral("/MarvikTools");
    return {folder + QStringLiteral("/profiles"), folder + QStringLiteral("/assignments.json")};
}
