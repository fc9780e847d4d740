#include "HttpError.h"
#include "LogLines.h"
#include "ServiceTest.h"

#include <QFile>
#include <QSslSocket>

using namespace Brivane;

namespace {

class HttpSecurityTest : public ServiceTest
{
protected:
    /// Whether a client that verifies no certificate can connect: then the service works, and only
    /// the library's checks can refuse it.
    bool carelessClientConnects(QSsl::SslProtocol protocol)
    {
        QSslSocket socket;
        socket.setPeerVerifyMode(QSslSocket::VerifyNone);
        socket.setProtocol(protocol);
        socket.connectToHostEncrypted("localhost", m_service->port());
        return serveUntil([&socket] {
                   return socket.isEncrypted() ||
                          socket.error() != QAbstractSocket::UnknownSocketError;
               }) &&
               socket.isEncrypted();
    }
};

class HttpCertificateTest : public HttpSecurityTest,
                            public ::testing::WithParamInterface<const char*>
{
};

} // namespace

TEST_P(HttpCertificateTest, IsRefused)
{
    ASSERT_TRUE(m_service->fault(QString("certificate %1").arg(GetParam())));
    ASSERT_TRUE(carelessClientConnects(QSsl::SecureProtocols));
    const LogLines lines;
    const Outcome outcome = run(check());
    EXPECT_EQ(outcome.code(), HttpError::SecureConnection);
    EXPECT_TRUE(lines.contains("certificate: "));
    EXPECT_TRUE(m_service->requests().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, HttpCertificateTest,
                         ::testing::Values("selfsigned", "wronghost", "expired", "unknown"));

TEST_F(HttpSecurityTest, TheServicesAuthorityIsTrustedOnlyWhenItIsGiven)
{
    m_client->setExtraCaFile({});
    EXPECT_EQ(run(check()).code(), HttpError::SecureConnection);
    m_client->setExtraCaFile(kit()->authorityFile().toStdString());
    EXPECT_EQ(run(check()).code(), 0);
    EXPECT_EQ(m_service->requests().size(), 1);
}

TEST_F(HttpSecurityTest, AFileWithoutAuthoritiesAddsNone)
{
    const LogLines lines;
    m_client->setExtraCaFile(m_directory.filePath("missing.pem").toStdString());
    EXPECT_EQ(run(check()).code(), HttpError::SecureConnection);
    EXPECT_TRUE(lines.contains("cannot be read"));

    QFile broken(m_directory.filePath("broken.pem"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("-----BEGIN CERTIFICATE-----\nnonsense\n-----END CERTIFICATE-----\n");
    broken.close();
    m_client->setExtraCaFile(broken.fileName().toStdString());
    EXPECT_EQ(run(check()).code(), HttpError::SecureConnection);
    EXPECT_TRUE(lines.contains("no certificate in it"));
}

TEST_F(HttpSecurityTest, OldProtocolsAreRefused)
{
    for (const auto& [name, protocol] :
         {std::pair{"tls 1.0", QSsl::TlsV1_0}, std::pair{"tls 1.1", QSsl::TlsV1_1}}) {
        ASSERT_TRUE(m_service->fault(name));
        ASSERT_TRUE(carelessClientConnects(protocol)) << name;
        EXPECT_EQ(run(check()).code(), HttpError::SecureConnection) << name;
    }
    EXPECT_TRUE(m_service->requests().isEmpty());
}

TEST_F(HttpSecurityTest, CurrentProtocolsAreAccepted)
{
    ASSERT_TRUE(m_service->fault("tls 1.2"));
    EXPECT_EQ(run(check()).code(), 0);
    ASSERT_TRUE(m_service->fault("tls 1.3"));
    // Qt 5.15 never asks schannel for it, whatever the version of Windows. Update services have to
    // offer 1.2 as long as there is a program with this Qt.
    const bool isSchannel = QSslSocket::sslLibraryVersionString().contains("Secure Channel");
    EXPECT_EQ(carelessClientConnects(QSsl::TlsV1_3), !isSchannel);
    EXPECT_EQ(run(check()).code(), isSchannel ? int(HttpError::SecureConnection) : 0);
}

TEST_F(HttpSecurityTest, ARedirectNeverLeavesTheSecureConnection)
{
    for (const char* fault : {"redirect http", "redirect file"}) {
        m_service->setBehaviour({});
        ASSERT_TRUE(m_service->fault(fault));
        EXPECT_EQ(run(check()).code(), HttpError::RedirectRefused);
        EXPECT_EQ(run(download(m_service->address("/packages/any"))).code(),
                  HttpError::RedirectRefused);
    }
    EXPECT_EQ(m_service->insecureConnections(), 0);
}

TEST_F(HttpSecurityTest, ExtraHeadersDoNotGoToAnotherHost)
{
    m_service->fault("redirect elsewhere");
    EXPECT_EQ(run(check()).code(), 0);
    ASSERT_EQ(m_service->requests().size(), 2);

    const auto request = check();
    request->headers = {{{"Authorization", "hush"}}};
    EXPECT_EQ(run(request).code(), HttpError::RedirectRefused);
    EXPECT_EQ(m_service->requests().size(), 3);
}

TEST_F(HttpSecurityTest, ACompressedAnswerIsNotUnpacked)
{
    m_service->fault("bomb");
    const QString url = m_service->addPackage("firmware.bin", "content");
    EXPECT_EQ(run(check()).code(), HttpError::UnsupportedEncoding);
    EXPECT_EQ(run(download(url)).code(), HttpError::UnsupportedEncoding);
    EXPECT_EQ(filesLeft(), QStringList());
}
