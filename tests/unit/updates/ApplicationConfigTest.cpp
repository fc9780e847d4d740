#include "ApplicationConfig.h"
#include "LogCapture.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>

namespace {

class ApplicationConfigTest : public testing::Test
{
protected:
    [[nodiscard]] QString path() const
    {
        return m_directory.filePath(QStringLiteral("config.json"));
    }

    QList<ApplicationConfig::VersionInfo> readFrom(const QByteArray& content)
    {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return ApplicationConfig::read(path());
    }

    QTemporaryDir m_directory;
    LogCapture m_log;
};

} // namespace

TEST_F(ApplicationConfigTest, ReadsVersionAndHashCode)
{
    const auto infos = readFrom(R"({"versionInfo":[{"version":"1.2.3","hashcode":"1e2a3b"}]})");
    ASSERT_EQ(infos.size(), 1);
    EXPECT_EQ(infos[0].version, QStringLiteral("1.2.3"));
    EXPECT_EQ(infos[0].hashCode, QStringLiteral("1e2a3b"));
}

TEST_F(ApplicationConfigTest, KeepsTheOrderOfSeveralEntries)
{
    const auto infos = readFrom(R"({"versionInfo":[{"version":"1"},{"version":"2"}]})");
    ASSERT_EQ(infos.size(), 2);
    EXPECT_EQ(infos[0].version, QStringLiteral("1"));
    EXPECT_EQ(infos[1].version, QStringLiteral("2"));
}

TEST_F(ApplicationConfigTest, LogsEveryKey)
{
    readFrom(R"({"b":1,"versionInfo":[],"a":{"inner":1}})");
    EXPECT_EQ(m_log.texts(), (QStringList{QStringLiteral("\"a\""), QStringLiteral("\"b\""),
                                          QStringLiteral("\"versionInfo\"")}));
}

TEST_F(ApplicationConfigTest, EntriesOfAnotherKindAreEmpty)
{
    EXPECT_TRUE(readFrom(R"({"versionInfo":"1.2.3"})").isEmpty());
    EXPECT_TRUE(readFrom(R"([1])").isEmpty());
    EXPECT_TRUE(readFrom(R"({})").isEmpty());
    const auto infos = readFrom(R"({"versionInfo":[7,{"version":7}]})");
    ASSERT_EQ(infos.size(), 2);
    EXPECT_EQ(infos[0].version, QString());
    EXPECT_EQ(infos[1].version, QString());
}

TEST_F(ApplicationConfigTest, MissingFileIsLogged)
{
    EXPECT_TRUE(ApplicationConfig::read(path()).isEmpty());
    ASSERT_EQ(m_log.texts().size(), 1);
    const QString line = m_log.texts().constFirst();
    EXPECT_TRUE(line.startsWith(QLatin1String("fail to open the file: "))) << line.toStdString();
    EXPECT_TRUE(line.contains(QLatin1String("ApplicationConfig.cpp, "))) << line.toStdString();
    EXPECT_TRUE(line.endsWith(QLatin1String(", SorvantaHome::readConfigFile")))
        << line.toStdString();
}

TEST_F(ApplicationConfigTest, BrokenFileIsLogged)
{
    EXPECT_TRUE(readFrom(R"({"versionInfo":[)").isEmpty());
    ASSERT_EQ(m_log.texts().size(), 1);
    EXPECT_TRUE(m_log.texts().constFirst().startsWith(QLatin1String("JsonParseError: ")));
    EXPECT_GT(m_log.texts().constFirst().size(), 20);
}
