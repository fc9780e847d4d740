#pragma once

#include "Command.h"

/// Saves the picture values that cameras have now, as the window's "Save" does.
class SaveCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(SaveCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
