#include "TrustStore.h"
#include "CertificateKit.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QSslCertificate>
#include <QSslSocket>
#include <QTemporaryDir>

using Brivane::TrustStore;

namespace {

class TrustStoreTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_kit.make(m_directory.path())); }

    QTemporaryDir m_directory;
    updateservice::CertificateKit m_kit;
};

} // namespace

TEST_F(TrustStoreTest, VerifiesWithTls12OrLater)
{
    TrustStore store;
    for (const std::string& file : {std::string(), m_kit.authorityFile().toStdString()}) {
        EXPECT_EQ(store.configuration(file).protocol(), QSsl::TlsV1_2OrLater);
        EXPECT_EQ(store.configuration(file).peerVerifyMode(), QSslSocket::VerifyPeer);
    }
}

TEST_F(TrustStoreTest, TheExtraAuthorityIsAddedToThoseOfTheSystem)
{
    const QList<QSslCertificate> systems = QSslConfiguration::systemCaCertificates();
    ASSERT_FALSE(systems.isEmpty());
    const QList<QSslCertificate> extra = QSslCertificate::fromPath(m_kit.authorityFile());
    ASSERT_FALSE(extra.isEmpty());
    TrustStore store;
    const auto trusted = store.configuration(m_kit.authorityFile().toStdString()).caCertificates();
    EXPECT_TRUE(trusted.contains(extra.first()));
    for (const QSslCertificate& certificate : systems)
        EXPECT_TRUE(trusted.contains(certificate));
    EXPECT_FALSE(store.configuration({}).caCertificates().contains(extra.first()));
}

TEST_F(TrustStoreTest, ReadsAFileAgainThatHadNoCertificate)
{
    const QString path = m_directory.filePath("late.pem");
    TrustStore store;
    const int before = store.configuration(path.toStdString()).caCertificates().size();
    ASSERT_TRUE(QFile::copy(m_kit.authorityFile(), path));
    EXPECT_GT(store.configuration(path.toStdString()).caCertificates().size(), before);
}
