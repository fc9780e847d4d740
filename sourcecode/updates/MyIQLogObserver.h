#pragma once

#include "ILogObserver.h"

/// Forwards the log lines of the networking library into the program's log.
class MyIQLogObserver : public Brivane::ILogObserver
{
public:
    /// On the library's thread. The level is not used.
    void onPrintLog(int level, std::string text) override;
};
