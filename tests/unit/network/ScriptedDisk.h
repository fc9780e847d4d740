#pragma once

/// The disk below the C library, which tells it late when it has no room.
class ScriptedDisk
{
public:
    /// While it exists, writing what is buffered to it fails with this error.
    explicit ScriptedDisk(int error);
    ~ScriptedDisk();
    ScriptedDisk(const ScriptedDisk&) = delete;
    ScriptedDisk& operator=(const ScriptedDisk&) = delete;

    [[nodiscard]] static int calls();
};
