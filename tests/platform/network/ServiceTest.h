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

/// A fault of the service and the code with which a request then ends.
struct Fault
{
    const char* name; ///< or several, separated by ", "
    std::int32_t code;
};

/// A service and a client that trusts its authority. The service runs on the test's thread, while
/// the test waits in serveUntil().
class ServiceTest : public ::testing::Test
{
protected:
    static constexpr int kServeTimeoutMs = 30000;

    static void SetUpTestSuite();
    static void TearDownTestSuite();

    void SetUp() override;

    /// Lets the service run until the condition is true.
    /// @return false when that takes longer than kServeTimeoutMs
    static bool serveUntil(const std::function<bool()>& condition);
    /// Lets the service run for a moment, in which what must not happen would happen.
    static void serveForAWhile();

    [[nodiscard]] std::shared_ptr<Brivane::STHTTPRequest> check() const;
    [[nodiscard]] std::shared_ptr<Brivane::STHTTPDownloadRequest>
    download(const QString& url) const;

    /// Adds a fault to the service, and shortens the time-outs of a request that will run into one.
    void apply(const Fault& fault, Brivane::STHTTPRequest& request);

    void send(const std::shared_ptr<Brivane::STHTTPRequest>& request);
    /// Sends the request and records its callbacks.
    Outcome begin(const std::shared_ptr<Brivane::STHTTPRequest>& request);
    /// Sends the request, waits for its end and a moment longer, and returns what was called back.
    Outcome run(const std::shared_ptr<Brivane::STHTTPRequest>& request);

    [[nodiscard]] std::string savePath() const;
    [[nodiscard]] QByteArray saved() const;
    /// The names of all files in the directory of the download.
    [[nodiscard]] QStringList filesLeft() const;

    static updateservice::CertificateKit* kit();

    QTemporaryDir m_directory;
    std::unique_ptr<updateservice::UpdateService> m_service;
    std::unique_ptr<Brivane::CHttpClient> m_client;

private:
    static std::unique_ptr<QTemporaryDir> s_certificateDirectory;
    static std::unique_ptr<updateservice::CertificateKit> s_kit;
};
