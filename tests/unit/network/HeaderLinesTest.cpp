#include "HeaderLines.h"

#include <gtest/gtest.h>
#include <QNetworkRequest>

using Brivane::addHeaderLines;

TEST(HeaderLinesTest, ALaterLineReplacesAnEarlierOfItsName)
{
    QNetworkRequest request;
    EXPECT_TRUE(addHeaderLines({{{"X-One", "1"}, {"X-Two", "2"}}, {{"x-one", "3"}}}, request));
    EXPECT_EQ(request.rawHeader("X-One"), "3");
    EXPECT_EQ(request.rawHeader("X-Two"), "2");
    EXPECT_TRUE(addHeaderLines({}, request));
}

TEST(HeaderLinesTest, TakesEveryCharacterOfAValue)
{
    QNetworkRequest request;
    EXPECT_TRUE(addHeaderLines({{{"X", "\t ~\xe6\x96\xb0"}}}, request));
    EXPECT_EQ(request.rawHeader("X"), "\t ~\xe6\x96\xb0");
}

TEST(HeaderLinesTest, RefusesWhatIsNoHeader)
{
    for (const auto& [name, value] :
         std::map<std::string, std::string>{{"", "v"},
                                            {"a b", "v"},
                                            {"a:", "v"},
                                            {"a\r\nb", "v"},
                                            {"\xe6", "v"},
                                            {"cr", "v\r"},
                                            {"lf", "v\nX: y"},
                                            {"nul", std::string("v\0", 2)},
                                            {"del", "\x7f"}}) {
        QNetworkRequest request;
        EXPECT_FALSE(addHeaderLines({{{name, value}}}, request)) << name;
    }
}

TEST(HeaderLinesTest, RefusesHeadersOfTheLibrarysOwn)
{
    for (const char* name : {"Accept-Encoding", "connection", "CONTENT-LENGTH", "Host",
                             "Transfer-Encoding", "Upgrade"}) {
        QNetworkRequest request;
        EXPECT_FALSE(addHeaderLines({{{name, "v"}}}, request)) << name;
    }
}
