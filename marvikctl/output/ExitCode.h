#pragma once

/// What the program returns to the shell.
enum class ExitCode {
    Done = 0,
    SomeFailed = 1, ///< some cameras failed, or a file could not be read or written
    NothingToDo = 2,
    NoCamera = 3,
    NoPermission = 4,
    Busy = 5,
    NotAnswered = 6, ///< a camera has refused or has not answered
    Usage = 64,
};
