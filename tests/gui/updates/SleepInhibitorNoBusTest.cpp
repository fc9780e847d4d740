#include "LogCapture.h"
#include "SleepInhibitor.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int kAtOnceMs = 2000;

} // namespace

/// A computer without a system bus.
class SleepInhibitorNoBusTest : public QObject
{
    Q_OBJECT

private slots:
    void isLoggedAndNothingHangs()
    {
        const QTemporaryDir empty;
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + empty.filePath("none").toUtf8());
        const LogCapture log;
        const auto complaints = [&log] {
            return log.texts().filter(QStringLiteral("the system may go to sleep:")).size();
        };
        QElapsedTimer timer;
        timer.start();
        {
            const SleepInhibitor inhibitor(QStringLiteral("why"));
            QVERIFY(timer.elapsed() < kAtOnceMs);
            QTRY_COMPARE(complaints(), 1);
        }
        // And again for each transfer.
        const SleepInhibitor another(QStringLiteral("why"));
        QTRY_COMPARE(complaints(), 2);
        QVERIFY(timer.elapsed() < qint64{2} * kAtOnceMs);
    }
};

QTEST_GUILESS_MAIN(SleepInhibitorNoBusTest)
#include "SleepInhibitorNoBusTest.moc"
