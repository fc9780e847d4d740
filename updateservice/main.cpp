#include "CertificateKit.h"
#include "ControlServer.h"
#include "UpdateService.h"

#include <cstdio>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace updateservice;

namespace {

int fail(const QString& text)
{
    std::fprintf(stderr, "updateservice: %s\n", qPrintable(text));
    return 1;
}

} // namespace

/// The update service as a program, for scripts: prints "listening on PORT" when it is ready and
/// runs until it is terminated. See README.md.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions(
        {{"port", "Port to listen on; 0 for a free one.", "number", "0"},
         {"certificates", "Directory for the certificates of this run.", "directory"},
         {"control", "Path of the socket that takes commands.", "path"},
         {"package", "File that is offered, under its own name.", "file"},
         {"offer", "Part of the offer: version=, details=, size=, url= or text=.", "part"},
         {"fault", "Fault to begin with, such as \"slow 100000\".", "fault"}});
    options.process(application);

    const QString directory = options.value("certificates");
    if (directory.isEmpty() || !QDir().mkpath(directory))
        return fail("needs --certificates with a directory");
    CertificateKit certificates;
    if (!CertificateKit::allowOldProtocols(directory) || !certificates.make(directory))
        return fail("no certificates: " + certificates.errorText());

    UpdateService service(certificates);
    if (!service.start(static_cast<quint16>(options.value("port").toUInt())))
        return fail("cannot listen: " + service.errorString());
    if (options.isSet("package")) {
        const QFileInfo package(options.value("package"));
        if (!package.isFile())
            return fail("no such package: " + package.filePath());
        UpdateOffer offer;
        offer.url = service.addPackageFile(package.fileName(), package.absoluteFilePath());
        offer.packageSize = UpdateOffer::sizeText(package.size());
        service.setOffer(offer);
    }

    ServiceCommands commands(service);
    QStringList lines;
    const QStringList parts = options.values("offer");
    for (const QString& part : parts)
        lines += "offer " + part;
    const QStringList faults = options.values("fault");
    for (const QString& fault : faults)
        lines += "fault " + fault;
    for (const QString& line : qAsConst(lines)) {
        const QString reply = commands.run(line);
        if (!reply.startsWith("ok"))
            return fail(reply);
    }

    ControlServer control(service);
    if (options.isSet("control") && !control.listen(options.value("control")))
        return fail("cannot take commands at " + options.value("control"));
    std::printf("listening on %d\n", service.port());
    std::fflush(stdout);
    return QCoreApplication::exec();
}
