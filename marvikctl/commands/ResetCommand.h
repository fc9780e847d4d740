#pragma once

#include "Command.h"

/// Gives cameras the settings that the window's "Reset" gives them.
class ResetCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(ResetCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
