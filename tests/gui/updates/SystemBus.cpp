#include "SystemBus.h"

#include <QFile>
#include <QStandardPaths>

namespace {

constexpr int kTimeoutMs = 10000;
const char* const kVariable = "DBUS_SYSTEM_BUS_ADDRESS";

const char* const kConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:path=%1</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

SystemBus::SystemBus()
{
    const QString socket = m_directory.filePath(QStringLiteral("bus"));
    QFile configuration(m_directory.filePath(QStringLiteral("bus.conf")));
    if (!configuration.open(QIODevice::WriteOnly))
        return;
    configuration.write(QString::fromLatin1(kConfiguration).arg(socket).toUtf8());
    configuration.close();
    m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_daemon.start(QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")),
                   {QStringLiteral("--config-file=") + configuration.fileName(),
                    QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    if (!m_daemon.waitForReadyRead(kTimeoutMs))
        return;
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    qputenv(kVariable, m_address.toUtf8());
}

SystemBus::~SystemBus()
{
    stop();
    qunsetenv(kVariable);
}

void SystemBus::stop()
{
    m_daemon.terminate();
    m_daemon.waitForFinished(kTimeoutMs);
    m_address.clear();
}
