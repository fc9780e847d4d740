#include "CtlProcess.h"
#include "PluggedCamera.h"

#include <QtTest>

namespace {

constexpr int kTimeoutMs = 20000;

/// Another program that uses the camera.
class Owner
{
public:
    Owner(PluggedCamera& camera, const char* use)
    {
        m_process.start(QStringLiteral(LOCK_HOLDER), {camera.hidPath(), QString::fromLatin1(use)});
        m_holds = m_process.waitForReadyRead(kTimeoutMs);
    }
    ~Owner() { end(); }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;

    [[nodiscard]] bool holds() const { return m_holds; }
    [[nodiscard]] QString name() const
    {
        return QStringLiteral("LockHolder (process %1)").arg(m_process.processId());
    }
    void end()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished(kTimeoutMs);
    }

private:
    QProcess m_process;
    bool m_holds = false;
};

} // namespace

/// A camera that another program uses.
class CtlLockTest : public QObject
{
    Q_OBJECT

private slots:
    void commandSaysWhoUsesTheCamera_data()
    {
        QTest::addColumn<QString>("line");
        for (const char* line : {"info", "get fov", "set fov=90", "reset", "save", "list"})
            QTest::addRow("%s", line) << QString::fromLatin1(line);
    }
    void commandSaysWhoUsesTheCamera()
    {
        QFETCH(const QString, line);
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        const Owner owner(camera, "exchange");
        QVERIFY(owner.holds());
        camera.forgetRequests();
        const auto run = ctl.run(line + QStringLiteral(" --json --timeout 0.1"));
        QCOMPARE(run.exitCode, 5);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("busy"));
        QVERIFY2(run.error().value("message").toString().contains(owner.name()),
                 qPrintable(run.output));
        QCOMPARE(camera.requestCount(), std::size_t{0});
    }

    void commandWaitsForTheOtherProgram()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        Owner owner(camera, "exchange");
        QVERIFY(owner.holds());
        QProcess waiting;
        ctl.start(waiting, {QStringLiteral("set"), QStringLiteral("fov=90"),
                            QStringLiteral("--timeout"), QStringLiteral("20")});
        QVERIFY(waiting.waitForStarted(kTimeoutMs));
        owner.end();
        QVERIFY(waiting.waitForFinished(kTimeoutMs));
        QCOMPARE(waiting.exitCode(), 0);
        QCOMPARE(camera.value("CameraView"), 90);
    }

    void transferIsNotWaitedFor()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        const Owner owner(camera, "firmware");
        QVERIFY(owner.holds());
        const auto run = ctl.run(QStringLiteral("get fov --timeout 1000"));
        QCOMPARE(run.exitCode, 5);
        QVERIFY2(run.errors.contains(QStringLiteral("firmware")), qPrintable(run.errors));
    }

    void otherCamerasAreNotStopped()
    {
        const CtlProcess ctl;
        PluggedCamera used{{"serial", "SVAA1"}};
        PluggedCamera free{{"serial", "SVAA2"}};
        const Owner owner(used, "exchange");
        QVERIFY(owner.holds());
        const auto run = ctl.run(QStringLiteral("set mirror=on --all --timeout 0.1"));
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(used.value("HorizontalMirror"), 0);
        QCOMPARE(free.value("HorizontalMirror"), 1);
    }
};

QTEST_GUILESS_MAIN(CtlLockTest)

#include "CtlLockTest.moc"
