#include "CommandLine.h"

#include <algorithm>
#include <stdexcept>

namespace virtualcamera {

CommandLine CommandLine::parse(int argc, char** argv, const std::map<std::string, bool>& own)
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
        const auto option = own.find(word);
        if (option != own.end() && !option->second) {
            line.options[word];
            continue;
        }
        if (option == own.end() && word != "--control" && word != "--script" && word != "--plug")
            throw std::invalid_argument("unknown option: " + word);
        if (i + 1 == argc)
            throw std::invalid_argument("value missing: " + word);
        std::string value = argv[++i];
        if (option != own.end()) {
            line.options[word] = value;
        } else if (word == "--control") {
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

} // namespace virtualcamera
