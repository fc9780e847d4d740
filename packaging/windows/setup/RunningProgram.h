#pragma once

/// The program as installer and uninstaller see it: its processes, whoever has started them.
class RunningProgram
{
public:
    enum class Place {
        Session,  ///< of this session; for the installation of one user
        Computer, ///< of every session; for an installation for all users
    };

    explicit RunningProgram(Place place);

    /// Asks the program of this session to end like "Quit" in its menu, and waits for all of them.
    /// They are never killed: a program may be writing firmware to a camera, long after its windows
    /// are gone.
    /// @return false when one still runs after @p timeoutMs milliseconds
    [[nodiscard]] bool endsWithin(unsigned long timeoutMs) const;

private:
    [[nodiscard]] bool isRunning() const;

    Place m_place;
};
