#pragma once

#include <atomic>
#include <QString>

/// One camera in the system's tree of devices, in place of the real tree: a USB device with a video
/// function and a HID function. The functions of the configuration manager that the product calls
/// are defined beside it. One object at a time; any thread.
class ScriptedDevNodes
{
public:
    ScriptedDevNodes();
    ~ScriptedDevNodes();
    ScriptedDevNodes(const ScriptedDevNodes&) = delete;
    ScriptedDevNodes& operator=(const ScriptedDevNodes&) = delete;

    /// What a broadcast of the system calls the HID interface.
    [[nodiscard]] static QString hidInterface();

    std::atomic<bool> hasVideoFunction{true};
    /// How often the video interface is looked for in vain.
    std::atomic<int> looksInVain{0};
    /// The camera leaves when its video interface is looked for this time; never for 0.
    std::atomic<int> leavesAtLook{0};
    /// How often the video interface was looked for.
    std::atomic<int> looks{0};
    std::atomic<bool> isPluggedIn{true};
};
