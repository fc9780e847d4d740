#include "DeviceIniStoreTest.h"

#include "QtPrinters.h"

namespace {

const QString kFirst = QStringLiteral("SN1");
const QString kSecond = QStringLiteral("SN2");

} // namespace

/// A file with content that the store has not written, and obstacles to saving.
class DeviceIniStoreDamageTest : public DeviceIniStoreTest
{
protected:
    void SetUp() override
    {
        DeviceIniStoreTest::SetUp();
        ASSERT_TRUE(m_store.write(kFirst, pictureOf(100)));
        m_before = contents();
    }

    [[nodiscard]] QByteArray copy(const QString& suffix) const
    {
        QFile file(m_path + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QByteArray m_before;
};

TEST_F(DeviceIniStoreDamageTest, CacheLocationThatCannotBeCreatedFailsTheSave)
{
    ASSERT_TRUE(QDir(m_location).removeRecursively());
    {
        QFile inTheWay(m_location);
        ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    }
    EXPECT_FALSE(m_store.write(kFirst, pictureOf(120)));
    EXPECT_EQ(m_store.read(kFirst), std::nullopt);
    EXPECT_TRUE(QFile::remove(m_location));
}

TEST_F(DeviceIniStoreDamageTest, DirectoryOfThatNameFailsTheSave)
{
    ASSERT_TRUE(QFile::remove(m_path));
    ASSERT_TRUE(QDir().mkpath(m_path));
    EXPECT_EQ(m_store.read(kFirst), std::nullopt);
    EXPECT_FALSE(m_store.write(kFirst, pictureOf(120)));
}

TEST_F(DeviceIniStoreDamageTest, DamagedFileIsReadAsFarAsPossible)
{
    for (const QByteArray& garbage :
         {QByteArray(4096, '\0'), QByteArray("\xFF\xFE\x80[[[\n]]=\n"), QByteArray("[unclosed\n"),
          QByteArray("no equals sign here\n"), QByteArray("[x]\nbright=@Variant(\\0\\0)\n")}) {
        setContents(garbage + m_before);
        (void)m_store.read(kSecond);
        setContents(m_before + garbage);
        EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
        setContents(garbage);
        EXPECT_EQ(m_store.read(kFirst), std::nullopt);
    }
    setContents(m_before.left(m_before.size() / 2));
    EXPECT_EQ(m_store.read(kFirst)->bright, 100);
}

TEST_F(DeviceIniStoreDamageTest, SaveIntoADamagedFileKeepsReadableGroupsAndACopy)
{
    const QByteArray damaged = m_before + "\n[SN2]\nthis line is damaged\nbright=121\n[unclosed\n";
    setContents(damaged);
    ASSERT_TRUE(m_store.write(QStringLiteral("SN3"), pictureOf(130)));
    EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
    EXPECT_EQ(m_store.read(kSecond)->bright, 121);
    EXPECT_EQ(m_store.read(QStringLiteral("SN3")), pictureOf(130));

    EXPECT_EQ(copy(QStringLiteral(".damaged")), damaged);
}

TEST_F(DeviceIniStoreDamageTest, EveryDamagedFileHasItsOwnCopy)
{
    for (const char* damage : {"first damage\n", "second damage\n", "third damage\n"}) {
        setContents(m_before + damage);
        ASSERT_TRUE(m_store.write(kSecond, pictureOf(130)));
    }
    EXPECT_EQ(copy(QStringLiteral(".damaged")), m_before + "first damage\n");
    EXPECT_EQ(copy(QStringLiteral(".damaged.2")), m_before + "second damage\n");
    EXPECT_EQ(copy(QStringLiteral(".damaged.3")), m_before + "third damage\n");
}

TEST_F(DeviceIniStoreDamageTest, LeftOversOfAKilledSaveAreRemovedByTheNext)
{
    const QString leftOver = m_path + QStringLiteral(".saving-AbCdEf");
    ASSERT_TRUE(QDir().mkpath(leftOver));
    ASSERT_TRUE(QFile::copy(m_path, leftOver + QStringLiteral("/device.ini")));
    EXPECT_EQ(m_store.read(kFirst), pictureOf(100));
    ASSERT_TRUE(m_store.write(kSecond, pictureOf(120)));
    EXPECT_EQ(files(), QStringList{QStringLiteral("device.ini")});
}

TEST_F(DeviceIniStoreDamageTest, SaveIntoAnIntactFileLeavesNoCopy)
{
    ASSERT_TRUE(m_store.write(kSecond, pictureOf(120)));
    EXPECT_EQ(files(), QStringList{QStringLiteral("device.ini")});
}
