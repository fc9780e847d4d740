#pragma once

#include <memory>

/// Tells installer and uninstaller that a process of the program exists. The first object of
/// main(), so that it is destroyed after everything that may still write a camera or a file: the
/// windows are gone long before a firmware transfer ends. Defined in ProgramMutex_<platform>.cpp.
class ProgramMutex
{
public:
    ProgramMutex();
    ~ProgramMutex();
    ProgramMutex(const ProgramMutex&) = delete;
    ProgramMutex& operator=(const ProgramMutex&) = delete;

private:
    class Objects;
    std::unique_ptr<Objects> m_objects;
};
