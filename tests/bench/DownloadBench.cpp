#include "CHttpClient.h"
#include "PackageService.h"
#include "RatioTable.h"
#include "STHTTPDownloadRequest.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <string>

using namespace Brivane;

namespace {

constexpr double kLeastThroughput = 0.9;
constexpr int kRounds = 9;
constexpr qint64 kPackageBytes = 256LL << 20;
constexpr int kCurlTimeoutMs = 60000;

[[noreturn]] void fail(const QString& what)
{
    std::fprintf(stderr, "%s\n", qPrintable(what));
    std::exit(2);
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void expectWhole(const QString& file)
{
    if (QFile(file).size() != kPackageBytes)
        fail("the package did not arrive");
    QFile::remove(file);
}

double withCurl(const PackageService& service, const QString& file)
{
    const auto start = std::chrono::steady_clock::now();
    QProcess curl;
    curl.start(QStandardPaths::findExecutable("curl"),
               {"--silent", "--show-error", "--cacert", service.authorityFile(), "--output", file,
                service.url()});
    if (!curl.waitForFinished(kCurlTimeoutMs) || curl.exitCode() != 0)
        fail("curl does not work: " + QString::fromLocal8Bit(curl.readAllStandardError()));
    const double seconds = secondsSince(start);
    expectWhole(file);
    return seconds;
}

double withTheLibrary(CHttpClient& client, const PackageService& service, const QString& file)
{
    std::mutex mutex;
    std::condition_variable changed;
    bool ended = false;
    const auto start = std::chrono::steady_clock::now();
    auto download = std::make_shared<STHTTPDownloadRequest>();
    download->url = service.url().toStdString();
    download->savePath = file.toStdString();
    download->onProgress = [](std::int32_t) {};
    download->onResponse = [&](const std::string&) {
        const std::lock_guard<std::mutex> lock(mutex);
        ended = true;
        changed.notify_one();
    };
    download->onError = [](std::int32_t, const std::string& message) {
        fail(QString::fromStdString(message));
    };
    std::shared_ptr<STHTTPRequest> request = download;
    client.request(request);
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [&ended] { return ended; });
    const double seconds = secondsSince(start);
    expectWhole(file);
    return seconds;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    // Only problems are logged: two lines for each download would hide the table.
    QLoggingCategory::setFilterRules("marvik.net.info=false");
    // In memory: the disk is not measured.
    const QTemporaryDir directory("/dev/shm/marvik-download-XXXXXX");
    if (!directory.isValid())
        fail("there is no memory to write to");
    const PackageService service(directory.path(), kPackageBytes);
    const QString file = directory.filePath("saved");
    CHttpClient client;
    client.setExtraCaFile(service.authorityFile().toStdString());
    // The first request of a client reads the authorities.
    withTheLibrary(client, service, file);

    RatioTable table;
    table.compare(
        "package of 256 MiB downloaded from loopback, to curl", RatioTable::kMilliseconds,
        [&] { return withCurl(service, file); },
        [&] { return withTheLibrary(client, service, file); }, kRounds, 1 / kLeastThroughput);
    return table.exitCode();
}
