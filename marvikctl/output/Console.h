#pragma once

#include <cstdio>

/// The console of the process. Defined in Console_<platform>.cpp.
namespace Console {

/// Whether a person reads @p file.
[[nodiscard]] bool isTerminal(FILE* file);

/// What the platform's libraries and its console need while the program runs.
class Session
{
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
};

} // namespace Console
