#include "MyIQLogObserver.h"
#include "LogCapture.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

TEST(MyIQLogObserver, WritesEachTextAsOneLine)
{
    const LogCapture log;
    MyIQLogObserver observer;
    observer.onPrintLog(0, "连接 ok");
    observer.onPrintLog(3, "first\nsecond\r\nthird");
    EXPECT_EQ(log.texts(),
              (QStringList{QString::fromUtf8("连接 ok"), QStringLiteral("first second third")}));
}
