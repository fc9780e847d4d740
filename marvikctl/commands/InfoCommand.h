#pragma once

#include "Command.h"

/// What a camera reports about itself.
class InfoCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(InfoCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
