#pragma once

#include "Command.h"
#include "ProfileFolders.h"

/// Gives every camera what is assigned to it, those that are there and those that come, until the
/// program is asked to end.
class WatchCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(WatchCommand)

public:
    void run(const Invocation& invocation, Report& report) override;

private:
    void apply(const Invocation& invocation, const Report& report, FoundCamera camera);

    ProfileFolders m_folders = ProfileFolders::ofThisSystem();
    int m_applied = 0;
    int m_unchanged = 0;
    int m_failed = 0;
};
