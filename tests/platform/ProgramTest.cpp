#include "PluggedCamera.h"

#include <csignal>
#include <memory>
#include <QProcess>
#include <QtTest>

namespace {

constexpr int kStartTimeoutMs = 40000;
constexpr int kEndTimeoutMs = 10000;

/// The program as a user starts it. The test reads its log from the standard error.
class Program
{
public:
    Program()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_LOGGING_RULES"));
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/MarvikTools"),
                        QStringList());
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    QProcess& process() { return m_process; }

    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }

    /// Waits for a line with @p text after the line that an earlier call has found.
    [[nodiscard]] bool logs(const QString& text)
    {
        return QTest::qWaitFor([this, text] { return find(text); }, kStartTimeoutMs);
    }

    /// Ends it as the system does; the time-out is long enough for a sanitizer's report.
    [[nodiscard]] bool terminate()
    {
        m_process.terminate();
        return QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning; },
                               kEndTimeoutMs);
    }

    [[nodiscard]] QString output() const { return m_output; }

private:
    bool find(const QString& text)
    {
        m_output += QString::fromUtf8(m_process.readAll());
        const int at = m_output.indexOf(text, m_read);
        if (at < 0)
            return false;
        m_read = at + text.size();
        return true;
    }

    QProcess m_process;
    QString m_output;
    int m_read = 0;
};

const QString kListBuilt = QStringLiteral("更新home页的设备列表");

} // namespace

class ProgramTest : public QObject
{
    Q_OBJECT

private slots:
    /// Nothing is drawn with GL, and its driver takes 26 MB.
    void loadsNoGlDriver()
    {
        Program program;
        QVERIFY(program.logs(kListBuilt));
        QFile maps(QStringLiteral("/proc/%1/maps").arg(program.process().processId()));
        QVERIFY(maps.open(QIODevice::ReadOnly));
        const QByteArray loaded = maps.readAll();
        QVERIFY(loaded.contains("libQt5XcbQpa"));
        QVERIFY(!loaded.contains("libGLX_"));
        QVERIFY(!loaded.contains("libgallium"));
        QVERIFY(!loaded.contains("_dri.so"));
        QVERIFY(program.terminate());
    }

    void startsListsTheCameraAndEndsOnRequest()
    {
        PluggedCamera camera;
        Program program;
        QVERIFY2(program.logs(QStringLiteral("hidCnt") + QStringLiteral(" 1 ")),
                 qPrintable(program.output()));
        QVERIFY(program.logs(camera.videoNode()));
        QVERIFY(program.logs(kListBuilt));
        QVERIFY(program.isRunning());
        QVERIFY(program.terminate());
        const int status = program.process().exitCode();
        QVERIFY2(status == 0 || status == SIGTERM, qPrintable(program.output()));
        QVERIFY(camera.isReleased());
    }

    void followsCamerasThatComeAndGo()
    {
        Program program;
        QVERIFY2(program.logs(kListBuilt), qPrintable(program.output()));
        auto camera = std::make_unique<PluggedCamera>();
        QVERIFY(program.logs(QStringLiteral("检测到插入设备")));
        QVERIFY(program.logs(QStringLiteral("hidCnt") + QStringLiteral(" 1 ")));
        QVERIFY(program.logs(kListBuilt));
        camera.reset();
        QVERIFY(program.logs(QStringLiteral("检测到拔出设备")));
        QVERIFY(program.logs(kListBuilt));
        QVERIFY(program.isRunning());
        QVERIFY(program.terminate());
    }

    void survivesACameraWithEveryBadHabit()
    {
        PluggedCamera camera{{"card", "<b>%n%s</b>"}, {"serial", std::string(1010, '\xff')}};
        camera.fault("oversize 65535");
        Program program;
        QVERIFY2(program.logs(kListBuilt), qPrintable(program.output()));
        for (const char* fault : {"short 1", "wrongecho", "stale 3", "readerror", "unplug-at 1"}) {
            camera.fault(fault);
            if (camera.stats().onBus)
                camera.unplug();
            camera.plug();
            QVERIFY(program.logs(kListBuilt));
            QVERIFY(program.isRunning());
        }
        QVERIFY(program.terminate());
    }

    void secondStartLeavesAtOnce()
    {
        Program first;
        QVERIFY2(first.logs(kListBuilt), qPrintable(first.output()));
        Program second;
        QVERIFY(
            QTest::qWaitFor([&second] { return second.process().state() == QProcess::NotRunning; },
                            kStartTimeoutMs));
        QCOMPARE(second.process().exitCode(), 0);
        QVERIFY(first.isRunning());
        QVERIFY(first.terminate());
    }
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "ProgramTest.moc"
