#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A separate message bus that the program uses as the system bus, as long as this object exists
/// and no connection to the system bus was made before.
class SystemBus
{
public:
    SystemBus();
    ~SystemBus();
    SystemBus(const SystemBus&) = delete;
    SystemBus& operator=(const SystemBus&) = delete;

    /// The address; empty when the bus does not run.
    [[nodiscard]] QString address() const { return m_address; }
    void stop();

private:
    QTemporaryDir m_directory;
    QProcess m_daemon;
    QString m_address;
};
