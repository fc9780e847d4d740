#include "ControlInterfaces.h"
#include "CtlProcess.h"
#include "PluggedCamera.h"
#include "UVCHid.h"

#include <QtTest>

/// Commands that only look.
class CtlReadTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutACameraThereIsNothingToList()
    {
        const CtlProcess ctl;
        const auto run = ctl.run(QStringLiteral("list"));
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.output, QString());
        QCOMPARE(run.errors, QStringLiteral("marvikctl: no supported camera is plugged in\n"));
    }

    /// The kernel's own files are read; the window lists the interfaces through hidapi.
    void interfacesAreThoseOfTheWindow()
    {
        PluggedCamera first{{"serial", "SVAA1"}};
        PluggedCamera other{{"vid", "1234"}, {"pid", "5678"}};
        QMap<QString, HidDevices> expected;
        UVCHid::getHidDevices(expected);
        const HidDeviceMap found = ControlInterfaces::list();
        QCOMPARE(found.keys(), expected.keys());
        QCOMPARE(found.size(), 2);
        for (const HidDevices& device : qAsConst(expected)) {
            QCOMPARE(found.value(device.path).vendorId, device.vendorId);
            QCOMPARE(found.value(device.path).productId, device.productId);
        }
    }

    void listsEveryCameraWithItsIdentity()
    {
        const CtlProcess ctl;
        PluggedCamera first{{"serial", "SVAA1"}, {"firmware", "1.0.5"}};
        PluggedCamera second{{"serial", "SVBB2"}, {"firmware", "2.1.0"}};
        const auto run = ctl.run(QStringLiteral("list --json"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.json().value("cameras").toArray().size(), 2);
        QCOMPARE(run.camera(0).value("serial").toString(), QStringLiteral("SVAA1"));
        QCOMPARE(run.camera(0).value("firmware").toString(), QStringLiteral("1.0.5"));
        QCOMPARE(run.camera(0).value("path").toString(), first.hidPath());
        QCOMPARE(run.camera(1).value("serial").toString(), QStringLiteral("SVBB2"));
        QCOMPARE(run.camera(1).value("path").toString(), second.hidPath());
        QVERIFY(first.isReleased() && second.isReleased());
    }

    void silentCameraIsListedAndDoesNotStopTheOthers()
    {
        const CtlProcess ctl;
        PluggedCamera silent{{"serial", "SVAA1"}};
        PluggedCamera other{{"serial", "SVBB2"}};
        silent.fault("noreply");
        const auto run = ctl.run(QStringLiteral("list --json"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.camera(0).value("connected").toBool(true), false);
        QCOMPARE(run.camera(0).value("error").toObject().value("code").toString(),
                 QStringLiteral("not-answered"));
        QCOMPARE(run.camera(1).value("connected").toBool(), true);
        QCOMPARE(run.camera(1).value("serial").toString(), QStringLiteral("SVBB2"));
        // Each request to a silent camera waits for three seconds: it is sent one.
        QCOMPARE(silent.requestCount(), std::size_t(1));
    }

    void tableIsAligned()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}, {"firmware", "1.0.5"}};
        const QString header =
            QStringLiteral("SERIAL  NAME       MODEL    FIRMWARE  STATE      PATH\n");
        const QString row = QStringLiteral("SVAA1   NOVA EDGE  RQ-T47K  1.0.5     connected  %1\n");
        QCOMPARE(ctl.run(QStringLiteral("list")).output, header + row.arg(camera.hidPath()));
    }

    void infoNamesTheStream()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        camera.setValue("width", 3840);
        camera.setValue("height", 2160);
        camera.setValue("streamon", 1);
        const auto run = ctl.run(QStringLiteral("info --json"));
        QCOMPARE(run.exitCode, 0);
        const QJsonObject stream = run.camera().value("stream").toObject();
        QCOMPARE(stream.value("on").toBool(), true);
        QCOMPARE(stream.value("width").toInt(), 3840);
        QCOMPARE(run.camera().value("video").toString(), camera.videoNode());
    }

    void oneValueIsPrintedAlone()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("CameraView", 90);
        const auto run = ctl.run(QStringLiteral("get fov"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, QStringLiteral("90\n"));
        // Neither the serial number nor the picture is asked for.
        QCOMPARE(camera.requestCount(), std::size_t(1));
        QCOMPARE(camera.handles().videoTotal, std::uint64_t(0));
    }

    void allValuesAreReadFromTheCamera()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("frameMaster", 1);
        camera.setValue("HorizontalMirror", 1);
        camera.setValue("PickupSensitivity", 80);
        camera.setValue("brightness", 138);
        const QJsonObject settings =
            ctl.run(QStringLiteral("get --json")).camera().value("settings").toObject();
        const QJsonObject expected{
            {"brightness", 138}, {"contrast", 128},       {"saturation", 128},
            {"sharpness", 128},  {"preset", "custom"},    {"framing", "division"},
            {"fov", 120},        {"sensitivity", "high"}, {"mirror", "on"}};
        QCOMPARE(settings, expected);
    }

    void valueThatTheCameraRefusesIsNull()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.fault("status 1 cmd=0x50A0");
        const auto run = ctl.run(QStringLiteral("get fov mirror --json"));
        QCOMPARE(run.exitCode, 6);
        const QJsonObject settings = run.camera().value("settings").toObject();
        QVERIFY(settings.value("fov").isNull());
        QCOMPARE(settings.value("mirror").toString(), QStringLiteral("off"));
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("refused"));
    }

    void severalCamerasNeedAChoice()
    {
        const CtlProcess ctl;
        PluggedCamera first{{"serial", "SVAA1"}};
        PluggedCamera second{{"serial", "SVAB2"}};
        second.setValue("CameraView", 60);
        const auto undecided = ctl.run(QStringLiteral("get fov"));
        QCOMPARE(undecided.exitCode, 64);
        QVERIFY(undecided.errors.contains("SVAA1") && undecided.errors.contains("SVAB2"));
        QCOMPARE(ctl.run(QStringLiteral("get fov -d SVAB")).output, QStringLiteral("60\n"));
        QCOMPARE(ctl.run(QStringLiteral("get fov -d SVA")).exitCode, 64);
        QCOMPARE(ctl.run(QStringLiteral("get fov -d SVX")).exitCode, 3);
        const auto all = ctl.run(QStringLiteral("get fov --all --json"));
        QCOMPARE(all.exitCode, 0);
        QCOMPARE(all.camera(0).value("settings").toObject().value("fov").toInt(), 120);
        QCOMPARE(all.camera(1).value("settings").toObject().value("fov").toInt(), 60);
    }

    void helpAndVersionNeedNoCamera()
    {
        const CtlProcess ctl;
        QVERIFY(ctl.run(QStringLiteral("help")).output.contains("get [KEY...]"));
        QVERIFY(ctl.run(QStringLiteral("help set")).output.contains("--dry-run"));
        const auto version = ctl.run(QStringLiteral("--version --json"));
        QCOMPARE(version.exitCode, 0);
        QVERIFY(!version.json().value("version").toString().isEmpty());
    }

    void usageErrorIsADocumentToo()
    {
        const CtlProcess ctl;
        const auto run = ctl.run(QStringLiteral("get fvo --json"));
        QCOMPARE(run.exitCode, 64);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("usage"));
        QCOMPARE(run.error().value("hint").toString(), QStringLiteral("Did you mean \"fov\"?"));
        const auto unreadable = ctl.run(QStringLiteral("--json --nonsense"));
        QCOMPARE(unreadable.exitCode, 64);
        QCOMPARE(unreadable.json().value("exitCode").toInt(), 64);
    }

    void verboseAddsTheLinesOfTheLog()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        QCOMPARE(ctl.run(QStringLiteral("get fov")).errors, QString());
        const auto run = ctl.run(QStringLiteral("get fov --verbose"));
        QCOMPARE(run.output, QStringLiteral("120\n"));
        QVERIFY(run.errors.contains("marvik.hid UVCHid::readInfoFromDevice"));
    }
};

QTEST_GUILESS_MAIN(CtlReadTest)
#include "CtlReadTest.moc"
