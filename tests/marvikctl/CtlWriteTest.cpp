#include "CtlProcess.h"
#include "PluggedCamera.h"

#include <QDir>
#include <QSettings>
#include <QtTest>

namespace {

/// The writes that have reached the camera, as "50a1=90".
QStringList writesOf(PluggedCamera& camera)
{
    QStringList writes;
    for (const auto& entry : camera.requests()) {
        if (entry.dataStatus == 1 && entry.payload.size() == 1)
            writes << QStringLiteral("%1=%2").arg(entry.command, 0, 16).arg(entry.payload.front());
    }
    return writes;
}

int savedValue(const CtlProcess& ctl, const char* key)
{
    const QSettings file(ctl.cachePath() + QStringLiteral("/device.ini"), QSettings::IniFormat);
    return file.value(QString::fromLatin1(key), -1).toInt();
}

} // namespace

/// Commands that change a camera or what is saved for it.
class CtlWriteTest : public QObject
{
    Q_OBJECT

private slots:
    void settingsReachTheCameraAndAreReported()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        const auto run =
            ctl.run(QStringLiteral("set fov=90 mirror=on sensitivity=low brightness=60%"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(camera.value("CameraView"), 90);
        QCOMPARE(camera.value("HorizontalMirror"), 1);
        QCOMPARE(camera.value("PickupSensitivity"), 30);
        QCOMPARE(camera.value("brightness"), 138);
        QCOMPARE(run.output, QStringLiteral("brightness   50%     ->  60%\n"
                                            "sensitivity  medium  ->  low\n"
                                            "fov          120     ->  90\n"
                                            "mirror       off     ->  on\n"));
        QVERIFY(camera.isReleased());
    }

    void writesComeInTheOrderOfTheWindow()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("CameraView", 60);
        camera.setValue("frameMaster", 1);
        camera.forgetRequests();
        QCOMPARE(ctl.run(QStringLiteral("set mirror=on framing=individual")).exitCode, 0);
        QCOMPARE(writesOf(camera), (QStringList{"5041=0", "5081=1", "5031=1", "5091=1"}));
    }

    void nothingIsWrittenTwice()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        QCOMPARE(ctl.run(QStringLiteral("set fov=90 preset=vivid")).exitCode, 0);
        camera.forgetRequests();
        const auto again = ctl.run(QStringLiteral("set fov=90 preset=vivid --json"));
        QCOMPARE(again.exitCode, 2);
        QCOMPARE(again.camera().value("result").toString(), QStringLiteral("nothing-to-do"));
        QVERIFY(writesOf(camera).isEmpty());
    }

    void oneWrongWordAndNothingIsWritten_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("key") << QStringLiteral("set fov=90 miror=on");
        QTest::newRow("value") << QStringLiteral("set fov=90 mirror=yes");
        QTest::newRow("excluded") << QStringLiteral("set fov=90 framing=group");
        QTest::newRow("twice") << QStringLiteral("set fov=90 fov=60");
        QTest::newRow("none") << QStringLiteral("set");
    }
    void oneWrongWordAndNothingIsWritten()
    {
        QFETCH(QString, line);
        const CtlProcess ctl;
        PluggedCamera camera;
        QCOMPARE(ctl.run(line).exitCode, 64);
        QCOMPARE(camera.requestCount(), std::size_t(0));
        QCOMPARE(camera.value("CameraView"), 120);
    }

    void viewOfAFramingCameraIsRefused()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("autoFrameSwicth", 1);
        const auto run = ctl.run(QStringLiteral("set mirror=on fov=90 --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("conflict"));
        QCOMPARE(camera.value("HorizontalMirror"), 0);
    }

    void dryRunSaysWhatWouldChange()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        const auto run = ctl.run(QStringLiteral("set fov=90 --dry-run --json"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.json().value("dryRun").toBool(), true);
        const QJsonObject change = run.camera().value("changes").toArray().at(0).toObject();
        QCOMPARE(change, (QJsonObject{{"key", "fov"}, {"from", 120}, {"to", 90}}));
        QCOMPARE(camera.value("CameraView"), 120);
        QCOMPARE(ctl.run(QStringLiteral("set fov=120 --dry-run")).exitCode, 2);
    }

    void quietPrintsNothing()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        const auto run = ctl.run(QStringLiteral("set fov=90 --quiet"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output + run.errors, QString());
        QCOMPARE(ctl.run(QStringLiteral("get fov --quiet")).output, QStringLiteral("90\n"));
    }

    void differenceAfterWritingIsAnErrorAndIsPutBack()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"range-brightness", "0:130:1:100"}};
        const auto run = ctl.run(QStringLiteral("set fov=90 brightness=178 --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("different"));
        QVERIFY(run.error().value("message").toString().contains("178 was written"));
        QCOMPARE(run.camera().value("restored").toBool(), true);
        QCOMPARE(camera.value("CameraView"), 120);
        QCOMPARE(camera.value("brightness"), 100);
    }

    void refusalInTheMiddleIsPutBack()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("CameraView", 60);
        camera.setValue("frameMaster", 1);
        camera.fault("status 3 cmd=0x5031");
        const auto run = ctl.run(QStringLiteral("set framing=individual fov=120 --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("refused"));
        QVERIFY(run.error().value("message").toString().startsWith("framing: "));
        QCOMPARE(camera.value("frameMaster"), 1);
        QCOMPARE(camera.value("autoFrameSwicth"), 0);
        QCOMPARE(camera.value("CameraView"), 60);
    }

    void unansweredWriteThatTheCameraHasExecutedIsPutBack()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.fault("noreply cmd=0x50A1 times=1");
        const auto run = ctl.run(QStringLiteral("set fov=90 --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("not-answered"));
        QCOMPARE(run.camera().value("restored").toBool(), true);
        QCOMPARE(camera.value("CameraView"), 120);
    }

    void resetGivesTheDefaultsOfTheWindow()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("CameraView", 60);
        camera.setValue("HorizontalMirror", 1);
        camera.setValue("PickupSensitivity", 80);
        camera.setValue("sharpness", 90);
        QCOMPARE(ctl.run(QStringLiteral("reset")).exitCode, 0);
        QCOMPARE(camera.value("CameraView"), 120);
        QCOMPARE(camera.value("HorizontalMirror"), 0);
        QCOMPARE(camera.value("PickupSensitivity"), 50);
        QCOMPARE(camera.value("autoFrameSwicth"), 1);
        QCOMPARE(camera.value("autoFrameMode"), 0);
        QCOMPARE(camera.value("sharpness"), 128);
        QCOMPARE(ctl.run(QStringLiteral("reset")).exitCode, 2);
    }

    void saveWritesTheGroupThatTheWindowReads()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        camera.setValue("brightness", 138);
        camera.setValue("saturation", 130);
        camera.setValue("sharpness", 120);
        QCOMPARE(ctl.run(QStringLiteral("save")).exitCode, 0);
        QCOMPARE(savedValue(ctl, "SVAA1/bright"), 138);
        QCOMPARE(savedValue(ctl, "SVAA1/contrast"), 128);
        QCOMPARE(savedValue(ctl, "SVAA1/saturation"), 130);
        QCOMPARE(savedValue(ctl, "SVAA1/sharpness"), 120);
        QCOMPARE(savedValue(ctl, "SVAA1/imagemode"), 1);
        QCOMPARE(ctl.run(QStringLiteral("save")).exitCode, 2);
    }

    void saveThatCannotWriteIsReported()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        // A folder in the place of the file: also an administrator cannot write that.
        QVERIFY(QDir().mkpath(ctl.cachePath() + QStringLiteral("/device.ini")));
        const auto run = ctl.run(QStringLiteral("save --json"));
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("file"));
    }

    void oneOfTwoCamerasFails()
    {
        const CtlProcess ctl;
        PluggedCamera silent{{"serial", "SVAA1"}};
        PluggedCamera other{{"serial", "SVBB2"}};
        silent.fault("noreply");
        const auto run = ctl.run(QStringLiteral("set mirror=on --all --json"));
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.camera(0).value("result").toString(), QStringLiteral("failed"));
        QCOMPARE(run.camera(1).value("result").toString(), QStringLiteral("done"));
        QCOMPARE(other.value("HorizontalMirror"), 1);
    }
};

QTEST_GUILESS_MAIN(CtlWriteTest)
#include "CtlWriteTest.moc"
