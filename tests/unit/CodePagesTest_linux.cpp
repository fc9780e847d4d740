#include "CodePages.h"
#include "LocaleCodec.h"

#include <gtest/gtest.h>

TEST(CodePages, TextIsInTheLocalEncoding)
{
    {
        const LocaleCodec utf8("UTF-8");
        EXPECT_EQ(CodePages::encode(QStringLiteral("A\u00E9")), QByteArray::fromHex("41c3a9"));
    }
    const LocaleCodec latin("ISO-8859-1");
    EXPECT_EQ(CodePages::encode(QStringLiteral("A\u00E9")), QByteArray::fromHex("41e9"));
}

TEST(CodePages, ResultHasNoTerminator)
{
    EXPECT_EQ(CodePages::encode(QStringLiteral("abc")), QByteArray("abc"));
    EXPECT_EQ(CodePages::encode(QString()).size(), 0);
}
