#pragma once

#include <string>
#include <vector>

namespace virtualcamera {

struct CommandLine
{
    /// Empty lets the bench choose a path inside its testbed.
    std::string controlSocket;
    std::string script;
    /// Requests "plug <id> key=value ...".
    std::vector<std::string> plugs;
    std::vector<std::string> program;
    bool wantsHelp = false;

    /// Throws std::invalid_argument.
    static CommandLine parse(int argc, char** argv);
    static const char* usage();
};

} // namespace virtualcamera
