#pragma once

#include "Command.h"

/// Profiles: dispatches to what is done with files alone and with cameras.
class ProfileCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(ProfileCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
