#pragma once

#include <map>
#include <string>
#include <vector>

namespace virtualcamera {

struct CommandLine
{
    /// Empty lets the program choose a path.
    std::string controlSocket;
    std::string script;
    /// Requests "plug <id> key=value ...".
    std::vector<std::string> plugs;
    /// The words after "--".
    std::vector<std::string> program;
    bool wantsHelp = false;
    /// The additional options that were given, with their values.
    std::map<std::string, std::string> options;

    /// `own` has the names of additional options, and whether a value follows each. Throws
    /// std::invalid_argument.
    static CommandLine parse(int argc, char** argv, const std::map<std::string, bool>& own = {});
};

} // namespace virtualcamera
