#pragma once

#include <vector>

/// What the program chooses of Qt's platform plug-in, unless the user has chosen: which one, and
/// that it loads no GL. Qt takes this from the environment, where programs that this one starts
/// would find it too. So create it before the application object and destroy it when the first
/// window is shown. GUI thread.
class WindowSystemChoice
{
public:
    WindowSystemChoice();
    ~WindowSystemChoice();
    WindowSystemChoice(const WindowSystemChoice&) = delete;
    WindowSystemChoice& operator=(const WindowSystemChoice&) = delete;

private:
    void choose(const char* variable, const char* value);

    std::vector<const char*> m_chosen;
};
