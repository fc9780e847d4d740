#include "HighDpi.h"
#include "WindowSystem.h"

#include <QtTest>

/// Properties of the monitor that are read before the application object exists.
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
    QCOMPARE(WindowSystem::monitorWidth().value_or(-1), expectedWidth());
}

void MonitorTest::widthOfTheMonitorDecidesAboutScaling()
{
    QCOMPARE(HighDpi::wantsScaling(WindowSystem::monitorWidth()), expectedWidth() == 2048);
}

QTEST_APPLESS_MAIN(MonitorTest)
#include "MonitorTest.moc"
