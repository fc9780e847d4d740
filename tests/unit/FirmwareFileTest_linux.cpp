#include "FirmwareFile.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>
#include <QTextCodec>

TEST(FirmwareFile, PathWithChineseCharactersOpens)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("固件.bin"));
    QFile made(path);
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
    made.write("firmware");
    made.close();

    QFile file;
    ASSERT_TRUE(FirmwareFile::open(file, path, *QTextCodec::codecForName("GB2312")));
    EXPECT_EQ(file.readAll(), QByteArray("firmware"));
}
