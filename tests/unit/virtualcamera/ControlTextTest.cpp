#include "protocol/ControlText.h"

#include <gtest/gtest.h>

namespace virtualcamera {

TEST(ControlText, EncodingHoldsAnyBytes)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    const std::string text = percentEncode(bytes);
    EXPECT_EQ(std::string::npos, text.find_first_of(" \n\r,="));
    EXPECT_EQ(bytes, percentDecode(text));
}

TEST(ControlText, StrayPercentSignIsKept)
{
    EXPECT_EQ("100%", percentDecode("100%"));
    EXPECT_EQ("%4", percentDecode("%4"));
    EXPECT_EQ("%zz", percentDecode("%zz"));
    EXPECT_EQ("A%", percentDecode("%41%"));
    EXPECT_EQ(" ", percentDecode("%20"));
}

TEST(ControlText, WordsAndKeyValues)
{
    EXPECT_EQ((std::vector<std::string>{"a", "b=c"}), splitWords("  a   b=c "));
    EXPECT_TRUE(splitWords("   ").empty());
    EXPECT_EQ((KeyValue{"name", "a b"}), parseKeyValue("name=a%20b"));
    EXPECT_EQ((KeyValue{"name", ""}), parseKeyValue("name="));
    EXPECT_FALSE(parseKeyValue("name"));
    EXPECT_EQ("card=a%20b", formatKeyValue("card", "a b"));
}

TEST(ControlText, Hexadecimal)
{
    const std::vector<std::uint8_t> bytes{0, 0x7F, 0xFF};
    EXPECT_EQ("007fff", toHex(bytes));
    EXPECT_EQ(bytes, fromHex("007fFF"));
    EXPECT_FALSE(fromHex("0"));
    EXPECT_FALSE(fromHex("0g"));
}

} // namespace virtualcamera
