#pragma once

#include "Command.h"

/// Settings of cameras.
class GetCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(GetCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
