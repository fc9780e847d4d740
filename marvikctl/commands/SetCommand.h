#pragma once

#include "Command.h"

/// Changes settings of cameras.
class SetCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(SetCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
