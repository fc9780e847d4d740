#pragma once

#include "Command.h"

/// Gives cameras what is assigned to them.
class ApplyCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(ApplyCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
