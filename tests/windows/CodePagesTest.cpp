#include "CodePages.h"

#include <gtest/gtest.h>
#include <qt_windows.h>

TEST(CodePages, AsciiStaysAsItIs)
{
    EXPECT_EQ(CodePages::encode(QStringLiteral("Stage-7 ~!")), QByteArray("Stage-7 ~!"));
    EXPECT_EQ(CodePages::encode(QString()), QByteArray());
}

TEST(CodePages, TextIsConvertedByTheConsolesCodePage)
{
    const QString text = QStringLiteral("é");
    char bytes[8] = {};
    const int length = ::WideCharToMultiByte(CP_OEMCP, 0, reinterpret_cast<LPCWCH>(text.utf16()), 1,
                                             bytes, sizeof bytes, nullptr, nullptr);
    EXPECT_EQ(CodePages::encode(text), QByteArray(bytes, length));
}

TEST(CodePages, ResultHasNoTerminator)
{
    EXPECT_EQ(CodePages::encode(QStringLiteral("abc")).size(), 3);
}
