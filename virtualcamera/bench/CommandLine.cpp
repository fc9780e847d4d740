#include "CommandLine.h"

#include <algorithm>
#include <stdexcept>

namespace virtualcamera {

CommandLine CommandLine::parse(int argc, char** argv)
{
    CommandLine line;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--") {
            line.program.assign(argv + i + 1, argv + argc);
            break;
        }
        if (word == "--help") {
            line.wantsHelp = true;
            continue;
        }
        if (word != "--control" && word != "--script" && word != "--plug")
            throw std::invalid_argument("unknown option: " + word);
        if (i + 1 == argc)
            throw std::invalid_argument("value missing: " + word);
        std::string value = argv[++i];
        if (word == "--control") {
            line.controlSocket = value;
        } else if (word == "--script") {
            line.script = value;
        } else {
            std::replace(value.begin(), value.end(), ',', ' ');
            line.plugs.push_back("plug " + value);
        }
    }
    return line;
}

const char* CommandLine::usage()
{
    return "usage: virtualcamera [--control SOCKET] [--script FILE]\n"
           "                     [--plug ID[,key=value...]]... [-- program arguments...]\n"
           "\n"
           "Runs the program with virtual conference cameras in /dev and /sys. Without a program\n"
           "it prints the environment to start one with and runs until SIGTERM.\n"
           "Values are percent-encoded; a blank is %20, a comma %2c.\n";
}

} // namespace virtualcamera
