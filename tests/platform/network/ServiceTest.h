#pragma once

#include "CertificateKit.h"
#include "CHttpClient.h"
#include "Outcome.h"
#include "STHTTPDownloadRequest.h"
#include "UpdateService.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <QTemporaryDir>
#include <string>

/// A service and a client that trusts its authority. The service runs on the test's thread, while
/// the test waits for something.
class ServiceTest : public ::testing::Test
{
protected:
    static constexpr int kPatienceMs = 30000;

    static void SetUpTestSuite();
    static void TearDownTestSuite();

    void SetUp() override;

    /// Serves until the condition is true; false when it takes too long.
    static bool serveUntil(const std::function<bool()>& condition);
    /// Serves for as long as something that should not happen might take.
    static void serveForAWhile();

    [[nodiscard]] std::shared_ptr<Brivane::STHTTPRequest> check() const;
    [[nodiscard]] std::shared_ptr<Brivane::STHTTPDownloadRequest>
    download(const QString& url) const;

    void send(const std::shared_ptr<Brivane::STHTTPRequest>& request);
    /// Sends it, waits for its end and a little longer, and returns what it was told.
    Outcome run(const std::shared_ptr<Brivane::STHTTPRequest>& request);
    Outcome run(const std::shared_ptr<Brivane::STHTTPDownloadRequest>& request);

    [[nodiscard]] std::string savePath() const;
    [[nodiscard]] QByteArray saved() const;
    /// Names in the directory of the download: the file and whatever was left beside it.
    [[nodiscard]] QStringList filesLeft() const;

    static updateservice::CertificateKit* kit();

    QTemporaryDir m_directory;
    std::unique_ptr<updateservice::UpdateService> m_service;
    std::unique_ptr<Brivane::CHttpClient> m_client;

private:
    static std::unique_ptr<QTemporaryDir> s_certificateDirectory;
    static std::unique_ptr<updateservice::CertificateKit> s_kit;
};
