#pragma once

#include "Command.h"

/// Help about the program or a command.
class HelpCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(HelpCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
