#include "HttpDownloadTest.h"
#include "HttpError.h"
#include "LogLines.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <QFile>
#include <QProcess>

using namespace Brivane;

namespace {

class HttpDownloadFaultTest : public HttpDownloadTest, public ::testing::WithParamInterface<Fault>
{
};

} // namespace

TEST_F(HttpDownloadTest, WritesTheBodyIntoTheFile)
{
    const Outcome outcome = run(download(m_url));
    EXPECT_EQ(outcome.end().kind, Outcome::Kind::Response);
    EXPECT_EQ(outcome.end().text, "");
    EXPECT_EQ(saved(), package());
    EXPECT_EQ(filesLeft(), QStringList("firmware.bin"));
    ASSERT_EQ(m_service->requests().size(), 1);
    EXPECT_EQ(m_service->requests().first().method, "GET");
    EXPECT_EQ(m_service->requests().first().body, "");
}

TEST_F(HttpDownloadTest, ReportsEachPercentageOnceAndInOrder)
{
    const Outcome::Told told = run(download(m_url)).told();
    ASSERT_FALSE(told.progress.empty());
    EXPECT_EQ(told.progress.front(), 0);
    EXPECT_EQ(told.progress.back(), 100);
    EXPECT_GT(told.progress.size(), 2U);
    EXPECT_TRUE(std::is_sorted(told.progress.begin(), told.progress.end()));
    EXPECT_EQ(std::adjacent_find(told.progress.begin(), told.progress.end()), told.progress.end());
    EXPECT_EQ(told.threads.size(), 1U);
}

TEST_F(HttpDownloadTest, ReportsThePieces)
{
    const Outcome::Told told = run(download(m_url)).told();
    EXPECT_EQ(told.data, package().toStdString());
    EXPECT_GT(told.pieces, 1U);
}

TEST_F(HttpDownloadTest, WithoutALengthOnlyTheEndIsReported)
{
    m_service->fault("framing chunked");
    const Outcome outcome = run(download(m_url));
    EXPECT_EQ(outcome.code(), 0);
    EXPECT_EQ(outcome.told().progress, std::vector<std::int32_t>{100});
    EXPECT_EQ(saved(), package());
}

TEST_F(HttpDownloadTest, AnEmptyPackageIsComplete)
{
    const Outcome outcome = run(download(m_service->addPackage("empty.bin", "")));
    EXPECT_EQ(outcome.code(), 0);
    EXPECT_EQ(outcome.told().progress, std::vector<std::int32_t>{100});
    EXPECT_EQ(saved(), "");
}

TEST_F(HttpDownloadTest, ReplacesAFile)
{
    QFile before(QString::fromStdString(savePath()));
    ASSERT_TRUE(before.open(QIODevice::WriteOnly));
    before.write("before");
    before.close();
    EXPECT_EQ(run(download(m_url)).code(), 0);
    EXPECT_EQ(saved(), package());
}

TEST_F(HttpDownloadTest, NoFileHasTheNameBeforeItIsComplete)
{
    m_service->fault("stall body 1000000");
    const auto request = download(m_url);
    const Outcome outcome = begin(request);
    ASSERT_TRUE(serveUntil([&outcome] { return outcome.told().data.size() == 1000000; }));
    EXPECT_FALSE(QFile::exists(QString::fromStdString(savePath())));
    request->cancel();
    ASSERT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(HttpDownloadTest, FollowsARedirect)
{
    m_service->fault("redirect once");
    EXPECT_EQ(run(download(m_url)).code(), 0);
    EXPECT_EQ(saved(), package());
}

TEST_F(HttpDownloadTest, ASlowPackageHasNoTimeLimitAsAWhole)
{
    // It takes longer than an answer that is not a download may take.
    m_service->fault("slow 20000");
    const auto request = download(m_service->addPackage("small.bin", package(100000)));
    request->inactivityTimeoutMs = 1000;
    EXPECT_EQ(run(request).code(), 0);
    EXPECT_EQ(saved(), package(100000));
}

TEST_P(HttpDownloadFaultTest, LeavesNothingOfThePackage)
{
    QFile before(QString::fromStdString(savePath()));
    ASSERT_TRUE(before.open(QIODevice::WriteOnly));
    before.write("before");
    before.close();
    const auto request = download(m_url);
    apply(GetParam(), *request);

    const Outcome outcome = run(request);

    EXPECT_EQ(outcome.end().kind, Outcome::Kind::Error);
    EXPECT_EQ(outcome.code(), GetParam().code);
    EXPECT_EQ(saved(), "before");
    EXPECT_EQ(filesLeft(), QStringList("firmware.bin"));
    const Outcome::Told told = outcome.told();
    EXPECT_TRUE(told.progress.empty() || told.progress.back() < 100);
}

INSTANTIATE_TEST_SUITE_P(
    All, HttpDownloadFaultTest,
    ::testing::Values(Fault{"status 404", 404}, Fault{"status 500", 500}, Fault{"status 202", 202},
                      Fault{"truncate 1000000", HttpError::ConnectionLost},
                      Fault{"truncate 2999999", HttpError::ConnectionLost},
                      Fault{"framing chunked, truncate 1000000", HttpError::ConnectionLost},
                      Fault{"framing chunked, truncate 1000000 pieces", HttpError::ConnectionLost},
                      Fault{"framing close", HttpError::UnknownLength},
                      Fault{"framing close, truncate 1000000", HttpError::UnknownLength},
                      Fault{"stall handshake", HttpError::ConnectTimeout},
                      Fault{"stall head", HttpError::InactivityTimeout},
                      Fault{"stall body 1000000", HttpError::InactivityTimeout},
                      Fault{"redirect loop", HttpError::TooManyRedirects}));

TEST_F(HttpDownloadTest, AMissingPackageIsAnError)
{
    EXPECT_EQ(run(download(m_service->address("/packages/missing.bin"))).code(), 404);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(HttpDownloadTest, RefusesAPackageThatIsTooLarge)
{
    // A sparse file, which needs no room on the disk.
    const QString big = m_directory.filePath("big");
    QFile file(big);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(CHttpClient::kMaxDownloadBytes + 1));
    file.close();
    const Outcome outcome = run(download(m_service->addPackageFile("big.bin", big)));
    EXPECT_EQ(outcome.code(), HttpError::AnswerTooLarge);
    EXPECT_TRUE(outcome.told().progress.empty());
    EXPECT_EQ(filesLeft(), QStringList("big"));
}

TEST_F(HttpDownloadTest, RefusesPathsWhereNoFileCanBe)
{
    const std::string missing = m_directory.filePath("missing/firmware.bin").toStdString();
    for (const std::string& path : {std::string(), m_directory.path().toStdString(), missing,
                                    QProcess::nullDevice().toStdString()}) {
        const auto request = download(m_url);
        request->savePath = path;
        const Outcome outcome = run(request);
        EXPECT_EQ(outcome.code(), HttpError::FileError) << path;
        EXPECT_TRUE(outcome.told().progress.empty());
    }
    EXPECT_TRUE(m_service->requests().isEmpty());
}

TEST_F(HttpDownloadTest, LogsNoSecretOfTheAddress)
{
    const LogLines lines;
    EXPECT_EQ(run(download(m_url + "?token=hush")).code(), 0);
    EXPECT_TRUE(lines.contains("/packages/firmware.bin"));
    EXPECT_FALSE(lines.contains("hush"));
}
