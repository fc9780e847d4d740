#include "CtlProcess.h"
#include "PluggedCamera.h"

#include <csignal>
#include <memory>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QtTest>

namespace {

constexpr int kTimeoutMs = 20000;
constexpr int kPlugRounds = 200;

/// A watch that runs; its events are read one by one.
class Watch
{
public:
    explicit Watch(const CtlProcess& ctl)
    {
        ctl.start(m_process, {QStringLiteral("watch"), QStringLiteral("--json-progress"),
                              QStringLiteral("--json")});
    }
    ~Watch()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// The next event; empty when none comes.
    [[nodiscard]] QJsonObject next()
    {
        m_process.setReadChannel(QProcess::StandardError);
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(kTimeoutMs))
                return {};
        }
        return QJsonDocument::fromJson(m_process.readLine()).object();
    }

    /// Ends it as the system does and returns its document.
    [[nodiscard]] QJsonObject end(int signal)
    {
        ::kill(static_cast<pid_t>(m_process.processId()), signal);
        m_process.waitForFinished(kTimeoutMs);
        m_exitCode = m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
        return QJsonDocument::fromJson(m_process.readAllStandardOutput()).object();
    }
    [[nodiscard]] int exitCode() const { return m_exitCode; }
    [[nodiscard]] qint64 id() const { return m_process.processId(); }

private:
    QProcess m_process;
    int m_exitCode = -1;
};

void assignToAll(const CtlProcess& ctl, const QByteArray& settings)
{
    QVERIFY(QDir().mkpath(ctl.configPath() + QStringLiteral("/profiles")));
    QFile profile(ctl.configPath() + QStringLiteral("/profiles/room.json"));
    QVERIFY(profile.open(QIODevice::WriteOnly));
    profile.write("{\"schema\": 1, \"settings\": " + settings + "}");
    profile.close();
    QCOMPARE(ctl.run(QStringLiteral("profile assign room --all")).exitCode, 0);
}

/// KiB of memory that the process has written to. Pages of a library are not counted: they become
/// private when another program that uses it ends.
int dirtyKiB(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    int sum = 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("Private_Dirty:"))
            sum += line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toInt();
    }
    return sum;
}

} // namespace

class CtlWatchTest : public QObject
{
    Q_OBJECT

private slots:
    void cameraThatIsThereGetsItsProfile()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        assignToAll(ctl, R"({"fov": 90})");
        Watch watch(ctl);
        QCOMPARE(watch.next().value("event").toString(), QStringLiteral("watching"));
        const QJsonObject event = watch.next();
        QCOMPARE(event.value("event").toString(), QStringLiteral("camera"));
        QCOMPARE(event.value("serial").toString(), QStringLiteral("SVAA1"));
        QCOMPARE(event.value("result").toString(), QStringLiteral("done"));
        QCOMPARE(camera.value("CameraView"), 90);
        const QJsonObject document = watch.end(SIGTERM);
        QCOMPARE(watch.exitCode(), 0);
        QCOMPARE(document.value("watched").toObject(),
                 (QJsonObject{{"applied", 1}, {"unchanged", 0}, {"failed", 0}}));
    }

    void cameraThatComesGetsItsProfileAndOthersAreLeftAlone()
    {
        const CtlProcess ctl;
        PluggedCamera first{{"serial", "SVAA1"}};
        assignToAll(ctl, R"({"fov": 90})");
        Watch watch(ctl);
        QCOMPARE(watch.next().value("event").toString(), QStringLiteral("watching"));
        QCOMPARE(watch.next().value("serial").toString(), QStringLiteral("SVAA1"));
        first.setValue("CameraView", 60); // the user has changed it since
        PluggedCamera second{{"serial", "SVBB2"}};
        QCOMPARE(watch.next().value("serial").toString(), QStringLiteral("SVBB2"));
        QCOMPARE(second.value("CameraView"), 90);
        QCOMPARE(first.value("CameraView"), 60);
        QCOMPARE(watch.end(SIGINT).value("watched").toObject().value("applied").toInt(), 2);
        QCOMPARE(watch.exitCode(), 0);
    }

    void differenceIsReported()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"range-brightness", "0:130:1:100"}};
        assignToAll(ctl, R"({"brightness": 178})");
        Watch watch(ctl);
        QCOMPARE(watch.next().value("event").toString(), QStringLiteral("watching"));
        const QJsonObject event = watch.next();
        QCOMPARE(event.value("result").toString(), QStringLiteral("failed"));
        QCOMPARE(event.value("error").toObject().value("code").toString(),
                 QStringLiteral("different"));
        QCOMPARE(watch.end(SIGTERM).value("watched").toObject().value("failed").toInt(), 1);
    }

    void silentCameraDoesNotEndTheWatch()
    {
        const CtlProcess ctl;
        assignToAll(ctl, R"({"fov": 90})");
        Watch watch(ctl);
        QCOMPARE(watch.next().value("event").toString(), QStringLiteral("watching"));
        PluggedCamera silent{{"serial", "SVAA1"}};
        silent.fault("noreply");
        silent.unplug();
        silent.plug();
        PluggedCamera other{{"serial", "SVBB2"}};
        QJsonObject event = watch.next();
        while (!event.isEmpty() && event.value("serial").toString() != QLatin1String("SVBB2"))
            event = watch.next();
        QCOMPARE(event.value("result").toString(), QStringLiteral("done"));
        QCOMPARE(other.value("CameraView"), 90);
    }

    void everyPlugRoundIsNoticed()
    {
        const CtlProcess ctl;
        assignToAll(ctl, R"({"fov": 90, "brightness": 150})");
        Watch watch(ctl);
        QCOMPARE(watch.next().value("event").toString(), QStringLiteral("watching"));
        PluggedCamera camera{{"serial", "SVAA1"}};
        int memory = 0;
        for (int round = 0; round < kPlugRounds; ++round) {
            if (round > 0)
                camera.plug();
            const QJsonObject event = watch.next();
            QCOMPARE(event.value("serial").toString(), QStringLiteral("SVAA1"));
            QCOMPARE(event.value("result").toString(), QStringLiteral("done"));
            QCOMPARE(camera.value("CameraView"), 90);
            QCOMPARE(camera.value("brightness"), 150);
            camera.setValue("CameraView", 120);
            QVERIFY(camera.isReleased());
            camera.unplug();
            if (round == kPlugRounds / 10)
                memory = dirtyKiB(watch.id());
        }
        const int growth = dirtyKiB(watch.id()) - memory;
        QVERIFY(memory > 0);
        // A sanitizer keeps freed memory.
        if (!MARVIK_SANITIZED)
            QVERIFY2(growth < 512, qPrintable(QString::number(growth)));
        QCOMPARE(watch.end(SIGTERM).value("watched").toObject().value("applied").toInt(),
                 kPlugRounds);
    }
};

QTEST_GUILESS_MAIN(CtlWatchTest)
#include "CtlWatchTest.moc"
