#include "PackageService.h"

#include <cstdio>
#include <cstdlib>
#include <QCoreApplication>
#include <QFile>

namespace {

constexpr int kStartTimeoutMs = 60000;

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(2);
}

} // namespace

PackageService::PackageService(const QString& directory, qint64 packageBytes)
    : m_directory(directory)
{
    QFile package(directory + "/package");
    if (!package.open(QIODevice::WriteOnly) || !package.resize(packageBytes))
        fail("there is no room for the package");
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + "/updateservice",
                    {"--certificates", directory, "--package", package.fileName()});
    if (!m_process.waitForReadyRead(kStartTimeoutMs))
        fail("the service does not start");
    m_port = m_process.readLine().trimmed().split(' ').last();
}

PackageService::~PackageService()
{
    m_process.terminate();
    m_process.waitForFinished();
}

QString PackageService::url() const
{
    return "https://localhost:" + m_port + "/packages/package";
}
