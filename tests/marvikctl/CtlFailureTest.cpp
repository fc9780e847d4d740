#include "CtlProcess.h"
#include "PluggedCamera.h"

#include <QtTest>

/// Each command with each failure of a camera: the exit code and the reason.
class CtlFailureTest : public QObject
{
    Q_OBJECT

private slots:
    void commandAndFault_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("code");
        struct Fault
        {
            const char* text;
            int exitCode;
            const char* code;
        };
        const Fault faults[]{
            {"noreply", 6, "not-answered"},     {"late 3500", 6, "not-answered"},
            {"readerror", 6, "not-answered"},   {"status 1", 6, "refused"},
            {"wrongecho", 6, "refused"},        {"writeerror", 6, "not-answered"},
            {"open-error", 4, "no-permission"},
        };
        for (const char* line : {"info", "get fov", "set fov=90", "reset", "save"}) {
            for (const Fault& fault : faults) {
                QTest::addRow("%s, %s", line, fault.text)
                    << QString::fromLatin1(line) << QString::fromLatin1(fault.text)
                    << fault.exitCode << QString::fromLatin1(fault.code);
            }
        }
    }
    void commandAndFault()
    {
        QFETCH(QString, line);
        QFETCH(QString, fault);
        QFETCH(int, exitCode);
        QFETCH(QString, code);
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        camera.fault(fault.toStdString());
        const auto run = ctl.run(line + QStringLiteral(" --json"));
        if (line == QLatin1String("info") && code == QLatin1String("refused"))
            code = QStringLiteral("not-answered"); // a camera that refuses the probe is no camera
        QCOMPARE(run.error().value("code").toString(), code);
        QCOMPARE(run.exitCode, exitCode);
        QCOMPARE(run.camera().value("result").toString(), QStringLiteral("failed"));
        camera.clearFaults();
        QCOMPARE(camera.value("CameraView"), 120);
        QVERIFY(camera.isReleased());
    }

    void missingPermissionSaysWhatIsMissing()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.fault("open-error");
        const auto run = ctl.run(QStringLiteral("list"));
        QCOMPARE(run.exitCode, 4);
        QVERIFY(run.errors.contains(camera.hidPath()));
        QVERIFY2(run.errors.contains("70-marviktools.rules") || run.errors.contains("plugdev"),
                 qPrintable(run.errors));
    }

    void missingPermissionForThePicture()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.fault("denied");
        const auto run = ctl.run(QStringLiteral("set fov=90 brightness=60% --json"));
        QCOMPARE(run.exitCode, 4);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("no-permission"));
        QCOMPARE(camera.value("CameraView"), 120);
        QCOMPARE(ctl.run(QStringLiteral("set fov=90")).exitCode, 0);
    }

    void pictureThatCannotBeSetIsPutBack()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.fault("control-error");
        const auto run = ctl.run(QStringLiteral("set mirror=on brightness=60% --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("refused"));
        QCOMPARE(camera.value("HorizontalMirror"), 0);
    }

    void cameraThatLeavesInTheMiddle()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.fault("unplug-at 3");
        const auto run = ctl.run(QStringLiteral("get --json"));
        QCOMPARE(run.exitCode, 6);
        QVERIFY(run.error().value("code").toString() == QLatin1String("gone") ||
                run.error().value("code").toString() == QLatin1String("not-answered"));
    }

    void cameraWithoutPictureControls()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"amp", "0"}};
        const auto run = ctl.run(QStringLiteral("get brightness --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("refused"));
        QCOMPARE(ctl.run(QStringLiteral("get fov")).exitCode, 0);
    }
};

QTEST_GUILESS_MAIN(CtlFailureTest)
#include "CtlFailureTest.moc"
