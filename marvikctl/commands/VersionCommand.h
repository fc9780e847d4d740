#pragma once

#include "Command.h"

/// The version of the program.
class VersionCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(VersionCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
