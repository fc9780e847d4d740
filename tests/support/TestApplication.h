#pragma once

#include <QCoreApplication>

/// The application object of a unit test whose subject has timers or events. Single shots belong to
/// its event dispatcher and end with it.
class TestApplication
{
private:
    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argc, m_argv};
};
