#include "ServiceCheck.h"
#include "SleepInhibitor.h"

#include <csignal>
#include <cstdio>
#include <QCoreApplication>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <thread>

namespace {

constexpr int kUsage = 64;

/// Holds the inhibitor until standard input ends, which it does when the program that has started
/// this one ends in any way.
int inhibit(QCoreApplication& application, const QString& why)
{
    // A key press that interrupts the shell's program comes here too; that program goes on until
    // its camera is written.
    std::signal(SIGINT, SIG_IGN);
    const SleepInhibitor inhibitor(why);
    std::thread reader([&application] {
        while (std::getchar() != EOF) {
        }
        QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    const int status = QCoreApplication::exec();
    reader.join();
    return status;
}

int check(const QString& model, const QString& version)
{
    ServiceCheck service;
    QObject::connect(&service, &ServiceCheck::finished, QCoreApplication::instance(),
                     [](const QJsonObject& answer) {
                         const QByteArray text = QJsonDocument(answer).toJson();
                         std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()),
                                     stdout);
                         QCoreApplication::quit();
                     });
    service.start(model, version);
    return QCoreApplication::exec();
}

} // namespace

/// The part of marvikctl that needs the network or the system bus; people do not start it.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QStringList arguments = QCoreApplication::arguments();
    const QString task = arguments.value(1);
    if (task == QLatin1String("inhibit") && arguments.size() == 3)
        return inhibit(application, arguments.at(2));
    if (task == QLatin1String("check") && arguments.size() == 4)
        return check(arguments.at(2), arguments.at(3));
    std::fputs("marvikctl starts this program by itself\n", stderr);
    return kUsage;
}
