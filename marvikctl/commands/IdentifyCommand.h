#pragma once

#include "Command.h"

/// Makes one camera recognisable: its mirror is switched over and back.
class IdentifyCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(IdentifyCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
