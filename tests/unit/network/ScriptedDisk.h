#pragma once

/// Replaces the disk below the C library. It reports an error only when data is flushed to it.
class ScriptedDisk
{
public:
    /// While the object exists, every flush fails with this error.
    explicit ScriptedDisk(int error);
    ~ScriptedDisk();
    ScriptedDisk(const ScriptedDisk&) = delete;
    ScriptedDisk& operator=(const ScriptedDisk&) = delete;

    /// How many flushes there were in this process.
    [[nodiscard]] static int calls();
    /// Called in place of the C library's function.
    static int flush();
};
