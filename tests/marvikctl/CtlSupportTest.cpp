#include "CtlProcess.h"
#include "PluggedCamera.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

QStringList writesOf(PluggedCamera& camera)
{
    QStringList writes;
    for (const auto& entry : camera.requests()) {
        if (entry.dataStatus == 1)
            writes << QStringLiteral("%1=%2").arg(entry.command, 0, 16).arg(entry.payload.front());
    }
    return writes;
}

/// The value of the only line with this beginning.
QString sample(const QString& metrics, const QString& beginning)
{
    const QStringList lines = metrics.split(QLatin1Char('\n'))
                                  .filter(QRegularExpression(
                                      QStringLiteral("^") + QRegularExpression::escape(beginning)));
    return lines.size() == 1 ? lines.first().section(QLatin1Char(' '), -1) : QString();
}

} // namespace

/// What helps people who look after cameras: identify, metrics and report.
class CtlSupportTest : public QObject
{
    Q_OBJECT

private slots:
    void identifyMirrorsAndMirrorsBack()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("HorizontalMirror", 1);
        QCOMPARE(ctl.run(QStringLiteral("identify")).exitCode, 0);
        QCOMPARE(writesOf(camera), (QStringList{"5091=0", "5091=1"}));
        QCOMPARE(camera.value("HorizontalMirror"), 1);
    }

    void identifyLeavesACameraInUseAlone()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("streamon", 1);
        const auto run = ctl.run(QStringLiteral("identify --json"));
        QCOMPARE(run.exitCode, 5);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("busy"));
        QVERIFY(writesOf(camera).isEmpty());
    }

    void identifyTakesOneCamera()
    {
        const CtlProcess ctl;
        PluggedCamera first{{"serial", "SVAA1"}};
        PluggedCamera second{{"serial", "SVBB2"}};
        QCOMPARE(ctl.run(QStringLiteral("identify")).exitCode, 64);
        QCOMPARE(ctl.run(QStringLiteral("identify --all")).exitCode, 64);
        QCOMPARE(ctl.run(QStringLiteral("identify -d SVB")).exitCode, 0);
        QVERIFY(writesOf(first).isEmpty());
        QCOMPARE(writesOf(second).size(), 2);
    }

    void metricsOfEveryCamera()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}, {"firmware", "1.0.5"}};
        PluggedCamera silent{{"serial", "SVBB2"}};
        silent.fault("noreply");
        camera.setValue("CameraView", 90);
        camera.setValue("frameMaster", 1);
        QVERIFY(QDir().mkpath(ctl.configPath() + QStringLiteral("/profiles")));
        QFile profile(ctl.configPath() + QStringLiteral("/profiles/room.json"));
        QVERIFY(profile.open(QIODevice::WriteOnly));
        profile.write(R"({"schema": 1, "settings": {"mirror": "on", "sensitivity": "high"}})");
        profile.close();
        QCOMPARE(ctl.run(QStringLiteral("profile assign room --all")).exitCode, 0);
        const auto run = ctl.run(QStringLiteral("metrics"));
        QCOMPARE(run.exitCode, 0);
        const QString labels =
            QStringLiteral("{serial=\"SVAA1\",model=\"RQ-T47K\",path=\"%1\"").arg(camera.hidPath());
        QCOMPARE(sample(run.output, QStringLiteral("marvik_cameras ")), QStringLiteral("2"));
        QCOMPARE(sample(run.output, QStringLiteral("marvik_camera_up") + labels),
                 QStringLiteral("1"));
        QCOMPARE(sample(run.output, QStringLiteral("marvik_camera_up{serial=\"\"")),
                 QStringLiteral("0"));
        QCOMPARE(sample(run.output, QStringLiteral("marvik_camera_firmware_info") + labels +
                                        QStringLiteral(",version=\"1.0.5\"}")),
                 QStringLiteral("1"));
        const QString setting = QStringLiteral("marvik_camera_setting") + labels;
        QCOMPARE(sample(run.output, setting + QStringLiteral(",setting=\"fov\"}")),
                 QStringLiteral("90"));
        QCOMPARE(sample(run.output, setting + QStringLiteral(",setting=\"framing\"}")),
                 QStringLiteral("3"));
        QCOMPARE(sample(run.output, QStringLiteral("marvik_camera_profile_drift") + labels +
                                        QStringLiteral(",profile=\"room\"}")),
                 QStringLiteral("2"));
        const double seconds =
            sample(run.output, QStringLiteral("marvik_camera_exchange_seconds") + labels)
                .toDouble();
        QVERIFY(seconds > 0 && seconds < 1);
    }

    void metricsWithoutACameraAreAnAnswer()
    {
        const CtlProcess ctl;
        const QString file = ctl.path(QStringLiteral("node/marvik.prom"));
        QCOMPARE(ctl.run(QStringList{"metrics", "-o", file}).exitCode, 0);
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QVERIFY(written.readAll().endsWith("\nmarvik_cameras 0\n"));
    }

    void reportIsAnArchiveThatTarReads()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        QVERIFY(QDir().mkpath(ctl.path(QStringLiteral("data/MarvikTools"))));
        QFile log(ctl.path(QStringLiteral("data/MarvikTools/MarvikTools.log")));
        QVERIFY(log.open(QIODevice::WriteOnly));
        log.write("first line\nthe camera SVAA1 came\n");
        log.close();
        const QString file = ctl.path(QStringLiteral("report.tar.gz"));
        QCOMPARE(ctl.run(QStringList{"report", "--output", file, "--redact"}).exitCode, 0);
        QProcess tar;
        tar.setProcessEnvironment(CtlProcess::toolEnvironment());
        tar.start(QStringLiteral("tar"), {"-xzf", file, "-C", ctl.path(QString())});
        QVERIFY(tar.waitForFinished());
        QCOMPARE(tar.exitCode(), 0);
        QCOMPARE(tar.readAllStandardError(), QByteArray());
        QFile lines(ctl.path(QStringLiteral("marvikctl-report/MarvikTools.log")));
        QVERIFY(lines.open(QIODevice::ReadOnly));
        QCOMPARE(lines.readAll(), QByteArray("first line\nthe camera SERIAL-1 came\n"));
        QFile text(ctl.path(QStringLiteral("marvikctl-report/report.json")));
        QVERIFY(text.open(QIODevice::ReadOnly));
        const QByteArray report = text.readAll();
        QVERIFY(report.contains("SERIAL-1"));
        QVERIFY(!report.contains("SVAA1"));
    }

    void reportThatCannotBePackedSaysWhy()
    {
        CtlProcess ctl;
        PluggedCamera camera;
        const QString file = ctl.path(QStringLiteral("report.tar.gz"));
        const QStringList line{"report", "--json", "--output", file};
        ctl.setVariable(QStringLiteral("PATH"), QStringLiteral("/nonexistent"));
        const auto run = ctl.run(line);
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.error().value("message").toString().contains("tar"), qPrintable(run.output));
        QVERIFY(!QFile::exists(file));
    }

    void reportNamesWhatIsWrong()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        PluggedCamera denied{{"serial", "SVBB2"}};
        denied.fault("open-error");
        const auto run = ctl.run(QStringLiteral("report --json"));
        QCOMPARE(run.exitCode, 0);
        const QJsonObject report = run.json().value("report").toObject();
        const QJsonArray cameras = report.value("cameras").toArray();
        QCOMPARE(cameras.size(), 2);
        const QJsonObject first = cameras.at(0).toObject();
        QCOMPARE(first.value("exchangeMilliseconds").toArray().size(), 10);
        QCOMPARE(first.value("settings").toObject().value("fov").toInt(), 120);
        QCOMPARE(first.value("nodes").toArray().size(), 2);
        QCOMPARE(cameras.at(1).toObject().value("error").toObject().value("code").toString(),
                 QStringLiteral("no-permission"));
        QCOMPARE(report.value("advice").toArray().size(), 1);
        QVERIFY(ctl.run(QStringLiteral("report")).output.contains("advice:\n"));
    }

    /// These have times and names of the machine, so there are no golden documents of them.
    void documentsFollowTheSchema()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        PluggedCamera denied{{"serial", "SVBB2"}};
        denied.fault("open-error");
        QVERIFY(QDir().mkpath(ctl.path(QStringLiteral("documents"))));
        for (const char* command : {"report", "metrics", "list"}) {
            const auto run = ctl.run(QString::fromLatin1(command) + QStringLiteral(" --json"));
            QFile file(ctl.path(QStringLiteral("documents/%1.json").arg(QLatin1String(command))));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(run.output.toUtf8());
        }
        QProcess check;
        check.setProcessEnvironment(CtlProcess::toolEnvironment());
        check.setProcessChannelMode(QProcess::MergedChannels);
        check.start(QStringLiteral(MARVIK_CHECK_SCHEMA),
                    {QStringLiteral(MARVIK_SCHEMA), ctl.path(QStringLiteral("documents"))});
        QVERIFY(check.waitForFinished());
        QVERIFY2(check.exitCode() == 0, check.readAll().constData());
    }
};

QTEST_GUILESS_MAIN(CtlSupportTest)
#include "CtlSupportTest.moc"
