#pragma once

#include "Command.h"

/// The state of all cameras in the text format of Prometheus.
class MetricsCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(MetricsCommand)

public:
    void run(const Invocation& invocation, Report& report) override;
};
