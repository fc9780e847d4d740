#pragma once

#include "Command.h"

/// All cameras, also those that do not answer.
class ListCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(ListCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
