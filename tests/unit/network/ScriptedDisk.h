#pragma once

/// The disk below fsync(), which tells it late when it has no room.
class ScriptedDisk
{
public:
    /// While it exists, fsync() fails with this error.
    explicit ScriptedDisk(int error);
    ~ScriptedDisk();
    ScriptedDisk(const ScriptedDisk&) = delete;
    ScriptedDisk& operator=(const ScriptedDisk&) = delete;

    [[nodiscard]] static int calls();
};
