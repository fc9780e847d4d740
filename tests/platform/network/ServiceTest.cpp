#include "ServiceTest.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

using namespace Brivane;

std::unique_ptr<QTemporaryDir> ServiceTest::s_certificateDirectory;
std::unique_ptr<updateservice::CertificateKit> ServiceTest::s_kit;

void ServiceTest::SetUpTestSuite()
{
    s_certificateDirectory = std::make_unique<QTemporaryDir>();
    s_kit = std::make_unique<updateservice::CertificateKit>();
    ASSERT_TRUE(s_kit->make(s_certificateDirectory->path())) << qPrintable(s_kit->errorText());
}

void ServiceTest::TearDownTestSuite()
{
    s_kit.reset();
    s_certificateDirectory.reset();
}

void ServiceTest::SetUp()
{
    m_service = std::make_unique<updateservice::UpdateService>(*s_kit);
    ASSERT_TRUE(m_service->start());
    m_client = std::make_unique<CHttpClient>();
    m_client->setExtraCaFile(s_kit->authorityFile().toStdString());
}

bool ServiceTest::serveUntil(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(kServeTimeoutMs))
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

void ServiceTest::serveForAWhile()
{
    QElapsedTimer timer;
    timer.start();
    serveUntil([&timer] { return timer.hasExpired(100); });
}

std::shared_ptr<STHTTPRequest> ServiceTest::check() const
{
    auto request = std::make_shared<STHTTPRequest>();
    request->url = m_service->address(updateservice::UpdateService::kCheckPath).toStdString();
    request->body = "{\"terminalType\":\"RQ-T47K\",\n\"version\":\"1.0.5\",\n}";
    return request;
}

std::shared_ptr<STHTTPDownloadRequest> ServiceTest::download(const QString& url) const
{
    auto request = std::make_shared<STHTTPDownloadRequest>();
    request->url = url.toStdString();
    request->savePath = savePath();
    return request;
}

void ServiceTest::apply(const Fault& fault, STHTTPRequest& request)
{
    const QStringList faults = QString(fault.name).split(", ");
    for (const QString& name : faults)
        ASSERT_TRUE(m_service->fault(name)) << qPrintable(name);
    if (faults.first().startsWith("stall")) {
        request.connectTimeoutMs = 1000;
        request.inactivityTimeoutMs = 1000;
    }
}

void ServiceTest::send(const std::shared_ptr<STHTTPRequest>& request)
{
    std::shared_ptr<STHTTPRequest> reference = request;
    m_client->request(reference);
}

Outcome ServiceTest::begin(const std::shared_ptr<STHTTPRequest>& request)
{
    Outcome outcome;
    if (auto* download = dynamic_cast<STHTTPDownloadRequest*>(request.get()))
        outcome.listenToDownload(*download);
    else
        outcome.listenTo(*request);
    send(request);
    return outcome;
}

Outcome ServiceTest::run(const std::shared_ptr<STHTTPRequest>& request)
{
    Outcome outcome = begin(request);
    EXPECT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    serveForAWhile();
    return outcome;
}

std::string ServiceTest::savePath() const
{
    return m_directory.filePath("firmware.bin").toStdString();
}

QByteArray ServiceTest::saved() const
{
    QFile file(QString::fromStdString(savePath()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

QStringList ServiceTest::filesLeft() const
{
    return QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

updateservice::CertificateKit* ServiceTest::kit()
{
    return s_kit.get();
}
