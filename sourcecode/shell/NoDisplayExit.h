#pragma once

/// Ends the program with one sentence on standard error and exit status 1 when Qt cannot open a
/// window system. Qt itself would abort the process. Create it before the application object and
/// destroy it right after; one object at a time.
class NoDisplayExit
{
public:
    NoDisplayExit();
    /// Passes on the messages that Qt has logged meanwhile.
    ~NoDisplayExit();
    NoDisplayExit(const NoDisplayExit&) = delete;
    NoDisplayExit& operator=(const NoDisplayExit&) = delete;
};
