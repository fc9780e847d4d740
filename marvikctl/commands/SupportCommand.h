#pragma once

#include "Command.h"

/// Collects for support what is known about cameras and system.
class SupportCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(SupportCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
