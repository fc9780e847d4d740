#include "Console.h"

#include <csignal>
#include <unistd.h>

bool Console::isTerminal(FILE* file)
{
    return ::isatty(::fileno(file)) != 0;
}

/// Without a reader a write fails; ended by the signal, the program could not put back what it has
/// written to a camera.
Console::Session::Session()
{
    std::signal(SIGPIPE, SIG_IGN);
}

Console::Session::~Session()
{
    std::signal(SIGPIPE, SIG_DFL);
}
