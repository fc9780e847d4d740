#include "Script.h"

#include "protocol/ControlText.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <utility>

namespace virtualcamera {

Script Script::load(const std::string& path)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read the script " + path);
    Script script;
    for (std::string line; std::getline(file, line);) {
        const std::vector<std::string> words = splitWords(line);
        if (words.empty() || words.front().front() == '#')
            continue;
        if (words.front() == "start")
            script.m_before = std::exchange(script.m_beside, {});
        else
            script.m_beside.push_back(line);
    }
    return script;
}

void Script::run(const std::vector<std::string>& lines,
                 const std::function<std::string(const std::string&)>& execute,
                 const std::function<bool(long)>& sleep)
{
    for (const std::string& line : lines) {
        const std::vector<std::string> words = splitWords(line);
        if (words.front() == "sleep") {
            if (!sleep(words.size() > 1 ? std::strtol(words[1].c_str(), nullptr, 10) : 0))
                return;
            continue;
        }
        const std::string reply = execute(line);
        if (reply.rfind("ok", 0) != 0)
            std::cerr << "virtualcamera: script: " << line << ": " << reply << std::endl;
    }
}

} // namespace virtualcamera
