#include "Desktop.h"
#include "HighDpi.h"

#include <QtTest>

/// What is asked of the monitor before there is an application.
class MonitorTest : public QObject
{
    Q_OBJECT

private slots:
    void monitorIsMeasuredInPixels();
    void widthOfTheMonitorDecidesAboutScaling();

private:
    static int expectedWidth() { return qEnvironmentVariableIntValue("MARVIK_EXPECTED_WIDTH"); }
};

void MonitorTest::monitorIsMeasuredInPixels()
{
    QVERIFY(expectedWidth() > 0);
    QCOMPARE(Desktop::monitorWidth().value_or(-1), expectedWidth());
}

void MonitorTest::widthOfTheMonitorDecidesAboutScaling()
{
    QCOMPARE(HighDpi::wantsScaling(Desktop::monitorWidth()), expectedWidth() == 2048);
}

QTEST_APPLESS_MAIN(MonitorTest)
#include "MonitorTest.moc"
