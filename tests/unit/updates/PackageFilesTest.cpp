#include "PackageFiles.h"
#include "CacheHome.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

/// Files of the cache directory, with settings of the test's own.
class PackageFilesTest : public ::testing::Test
{
protected:
    PackageFilesTest()
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_settings.path());
    }

    static QString path(const QString& name)
    {
        return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QLatin1Char('/') +
               name;
    }
    /// Makes a file that was last changed this many days ago.
    void make(const QString& name, int days) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.setFileTime(m_now.addDays(-days), QFileDevice::FileModificationTime));
    }
    static QStringList files()
    {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::CacheLocation))
            .entryList(QDir::Files, QDir::Name);
    }

    const QDateTime m_now = QDateTime::currentDateTime();
    QTemporaryDir m_settings;
    CacheHome m_home;
};

} // namespace

TEST_F(PackageFilesTest, OldPackagesAreRemoved)
{
    PackageFiles::add(path(QStringLiteral("fw.bin")));
    PackageFiles::add(path(QStringLiteral("setup.exe")));
    make(QStringLiteral("fw.bin"), 8);
    make(QStringLiteral("setup.exe"), 8);
    PackageFiles::removeOld(m_now);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(PackageFilesTest, RestOfAnInterruptedDownloadIsRemoved)
{
    PackageFiles::add(path(QStringLiteral("fw.bin")));
    make(QStringLiteral("fw.bin.aBcDeF"), 8);
    PackageFiles::removeOld(m_now);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(PackageFilesTest, NewPackageStaysUntilItIsOld)
{
    PackageFiles::add(path(QStringLiteral("fw.bin")));
    make(QStringLiteral("fw.bin"), 6);
    PackageFiles::removeOld(m_now);
    EXPECT_EQ(files(), QStringList("fw.bin"));
    PackageFiles::removeOld(m_now.addDays(2));
    EXPECT_EQ(files(), QStringList());
}

TEST_F(PackageFilesTest, OtherFilesStay)
{
    PackageFiles::add(path(QStringLiteral("fw.bin")));
    const QStringList others{"fw.bin.1", "fw.bin.abcde1", "fw.bin2", "other.bin"};
    for (const QString& name : others)
        make(name, 100);
    PackageFiles::removeOld(m_now);
    EXPECT_EQ(files(), others);
}

TEST_F(PackageFilesTest, RemovedPackageIsForgotten)
{
    const QString name = QStringLiteral("fw.bin");
    PackageFiles::add(path(name));
    make(name, 0);
    PackageFiles::remove(path(name));
    EXPECT_EQ(files(), QStringList());
    make(name, 8); // now the file of somebody else
    PackageFiles::removeOld(m_now);
    EXPECT_EQ(files(), QStringList(name));
}

TEST_F(PackageFilesTest, NameInTheSettingsCannotLeaveTheFolder)
{
    const QString outside = m_settings.filePath(QStringLiteral("outside"));
    QFile file(outside);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.setFileTime(m_now.addDays(-8), QFileDevice::FileModificationTime));
    QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("MarvikTools"),
              QStringLiteral("MarvikTools"))
        .setValue(QStringLiteral("updates/packages"), QStringList{outside});
    PackageFiles::removeOld(m_now);
    EXPECT_TRUE(QFile::exists(outside));
}
