#include "DeviceIniStoreTest.h"

#include "LogCapture.h"
#include "QtPrinters.h"

#include <algorithm>
#include <QSet>
#include <QVector>
#include <random>

namespace {

/// Serial numbers that a faulty or hostile device may report.
QStringList strangeSerials()
{
    return {
        QStringLiteral("SN/1"),
        QStringLiteral("SN\\1"),
        QStringLiteral("/SN1"),
        QStringLiteral("SN1/"),
        QStringLiteral("a//b"),
        QStringLiteral("a/b"),
        QStringLiteral("../../etc/passwd"),
        QStringLiteral("["),
        QStringLiteral("]"),
        QStringLiteral("[SN1]"),
        QStringLiteral("SN1]\n[SN2]\nbright=1"),
        QStringLiteral("SN%2F1"),
        QStringLiteral("%"),
        QStringLiteral("%%"),
        QStringLiteral("%General"),
        QStringLiteral("General"),
        QStringLiteral("%47eneral"),
        QStringLiteral(" "),
        QStringLiteral(" SN1"),
        QStringLiteral("SN1 "),
        QStringLiteral("SN1"),
        QStringLiteral("\t"),
        QStringLiteral("bright"),
        QStringLiteral("a=b;c#d,e\"f"),
        QStringLiteral("@Invalid()"),
        QStringLiteral("相机"),
        QStringLiteral("é"),
        QStringLiteral("e\u0301"),
        QString(QChar(0)),
        QStringLiteral("a") + QChar(0) + QStringLiteral("b"),
        QString(QChar(0xD800)),
        QStringLiteral("x") + QChar(0xDC00),
        QString::fromUcs4(U"\U0001F3A5"),
        QString(1010, QLatin1Char('x')),
        QString(1010, QLatin1Char('/')),
        QString(1009, QLatin1Char('x')) + QLatin1Char('y'),
    };
}

} // namespace

TEST_F(DeviceIniStoreTest, ReadingWithoutAFileGivesNothingAndCreatesNothing)
{
    EXPECT_EQ(m_store.read(QStringLiteral("SN1")), std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(m_location));
}

TEST_F(DeviceIniStoreTest, ReadingAnotherSerialNumberGivesNothingAndChangesNothing)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    const QByteArray before = contents();
    EXPECT_EQ(m_store.read(QStringLiteral("SN2")), std::nullopt);
    EXPECT_EQ(contents(), before);
}

TEST_F(DeviceIniStoreTest, WritingCreatesTheCacheLocationAndNothingButTheFile)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    EXPECT_EQ(files(), QStringList{QStringLiteral("device.ini")});
}

TEST_F(DeviceIniStoreTest, OrdinarySerialNumberIsWrittenUnchanged)
{
    PictureParameters p = pictureOf(100);
    ASSERT_TRUE(m_store.write(QStringLiteral("RQT47K-2024_0017.B"), p));
    // The order of the keys and the line ends depend on the platform.
    QList<QByteArray> lines = contents().replace("\r\n", "\n").split('\n');
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_EQ(lines.takeFirst(), QByteArray("[RQT47K-2024_0017.B]"));
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, (QList<QByteArray>{"", "bright=100", "contrast=101", "imagemode=3",
                                        "saturation=102", "sharpness=103"}));
    EXPECT_EQ(m_store.read(QStringLiteral("RQT47K-2024_0017.B")), p);
}

TEST_F(DeviceIniStoreTest, MissingKeyReadsAsZero)
{
    setContents("[SN1]\nbright=120\nsharpness=90\n");
    PictureParameters expected;
    expected.bright = 120;
    expected.sharpness = 90;
    EXPECT_EQ(m_store.read(QStringLiteral("SN1")), expected);
}

TEST_F(DeviceIniStoreTest, ValueThatIsNoNumberReadsAsZero)
{
    setContents("[SN1]\nbright=warm\ncontrast=\nsaturation=99999999999\nsharpness=90\n");
    PictureParameters expected;
    expected.sharpness = 90;
    EXPECT_EQ(m_store.read(QStringLiteral("SN1")), expected);
}

TEST_F(DeviceIniStoreTest, KeyOfTheReselectedImageModeIsNeverWritten)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    EXPECT_FALSE(contents().contains("image_mode"));
    EXPECT_EQ(m_store.read(QStringLiteral("SN1"))->imageMode, 3);
    EXPECT_EQ(m_store.read(QStringLiteral("SN1"))->reselectedImageMode, 0);

    setContents("[SN1]\nimage_mode=2\n");
    EXPECT_EQ(m_store.read(QStringLiteral("SN1"))->reselectedImageMode, 2);
}

TEST_F(DeviceIniStoreTest, RewriteKeepsOtherGroupsAndOtherKeys)
{
    setContents("[SN1]\nbright=1\nimage_mode=2\n\n[SN2]\nbright=5\nnote=\"\xE7\x9B\xB8\"\n");
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    PictureParameters first = pictureOf(100);
    first.reselectedImageMode = 2;
    EXPECT_EQ(m_store.read(QStringLiteral("SN1")), first);
    EXPECT_EQ(m_store.read(QStringLiteral("SN2"))->bright, 5);
    EXPECT_TRUE(contents().contains("note=\xE7\x9B\xB8")) << contents().constData();
}

TEST_F(DeviceIniStoreTest, ValueThatIsNotKnownKeepsItsPlaceInTheFile)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(120),
                              {QStringLiteral("contrast"), QStringLiteral("CameraView")}));
    PictureParameters expected = pictureOf(120);
    expected.contrast = pictureOf(100).contrast;
    EXPECT_EQ(m_store.read(QStringLiteral("SN1")), expected);
}

TEST_F(DeviceIniStoreTest, GroupWithoutAValueThatIsNotKnownIsNotWritten)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    const QByteArray before = contents();
    EXPECT_FALSE(m_store.write(QStringLiteral("SN2"), pictureOf(120), {QStringLiteral("bright")}));
    EXPECT_EQ(contents(), before);
    EXPECT_EQ(m_store.read(QStringLiteral("SN2")), std::nullopt);
}

TEST_F(DeviceIniStoreTest, FastRewritesOfEqualLengthAreAllSeen)
{
    for (int value = 100; value < 150; ++value) {
        ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(value)));
        ASSERT_EQ(m_store.read(QStringLiteral("SN1")), pictureOf(value));
    }
}

/// QSettings notices a change by the size and the time of the file.
TEST_F(DeviceIniStoreTest, TimeOfTheFileGrowsWithEverySave)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    const QDateTime ahead = QDateTime::currentDateTime().addSecs(3600);
    {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(ahead, QFileDevice::FileModificationTime));
    }
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(110)));
    EXPECT_GT(QFileInfo(m_path).lastModified(), ahead);
}

TEST_F(DeviceIniStoreTest, CameraWithoutASerialNumberHasNoGroup)
{
    for (const QString& serial : {QString(), QStringLiteral(""), QString(QChar(0xFFFF))}) {
        EXPECT_FALSE(m_store.write(serial, pictureOf(100)));
        EXPECT_EQ(m_store.read(serial), std::nullopt);
    }
    EXPECT_FALSE(QFileInfo::exists(m_location));
}

TEST_F(DeviceIniStoreTest, EveryStrangeSerialNumberHasItsOwnGroup)
{
    const QStringList serials = strangeSerials();
    for (int i = 0; i < serials.size(); ++i)
        ASSERT_TRUE(m_store.write(serials.at(i), pictureOf(i))) << i;
    for (int i = 0; i < serials.size(); ++i)
        EXPECT_EQ(m_store.read(serials.at(i)), pictureOf(i)) << i;
    EXPECT_EQ(files(), QStringList{QStringLiteral("device.ini")});
    EXPECT_EQ(contents().count("\nbright="), serials.size());
}

TEST_F(DeviceIniStoreTest, RandomSerialNumbersHaveDifferentGroups)
{
    const QString alphabet =
        QStringLiteral("a/\\%[]= \n2F5C47;\"") + QChar(0) + QChar(0xD83C) + QChar(0x76F8);
    std::mt19937 random(20240817);
    const auto below = [&random](int n) { return static_cast<int>(random() % unsigned(n)); };
    QStringList serials;
    for (int i = 0; i < 200; ++i) {
        QString serial;
        const int length = 1 + below(6);
        for (int c = 0; c < length; ++c)
            serial += alphabet.at(below(alphabet.size()));
        if (!serials.contains(serial))
            serials += serial;
    }
    for (int i = 0; i < serials.size(); ++i)
        ASSERT_TRUE(m_store.write(serials.at(i), pictureOf(i)));
    for (int i = 0; i < serials.size(); ++i)
        EXPECT_EQ(m_store.read(serials.at(i)), pictureOf(i)) << serials.at(i).toStdString();
}

TEST_F(DeviceIniStoreTest, SerialNumberCanBeRecoveredFromTheGroupName)
{
    QSet<QString> groups;
    const QStringList serials = strangeSerials() << QStringLiteral("");
    for (const QString& serial : serials) {
        const QString group = DeviceIniStore::groupName(serial);
        EXPECT_EQ(DeviceIniStore::serialNumber(group), serial);
        EXPECT_FALSE(group.isEmpty());
        EXPECT_FALSE(group.contains(QLatin1Char('/')) || group.contains(QLatin1Char('\\')));
        groups.insert(group);
    }
    EXPECT_EQ(groups.size(), serials.size());
    EXPECT_EQ(DeviceIniStore::groupName(QStringLiteral("SN-1 [b]")), QStringLiteral("SN-1 [b]"));
}

TEST_F(DeviceIniStoreTest, EachOpenLogsTheCacheLocations)
{
    const LogCapture log;
    (void)m_store.read(QStringLiteral("SN1"));
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    QString expected;
    QDebug(&expected).nospace() << "系统缓存目录路径: "
                                << QStandardPaths::standardLocations(QStandardPaths::CacheLocation);
    EXPECT_EQ(log.texts(), (QStringList{expected, expected}));
}
