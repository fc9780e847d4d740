#include "CtlProcess.h"
#include "PluggedCamera.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSettings>
#include <QtTest>

namespace {

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

void writeProfile(const CtlProcess& ctl, const char* name, const QByteArray& settings)
{
    write(ctl.configPath() + QStringLiteral("/profiles/%1.json").arg(QLatin1String(name)),
          "{\"schema\": 1, \"settings\": " + settings + "}");
}

} // namespace

/// Profiles, their assignment, and what is applied without a question.
class CtlProfileTest : public QObject
{
    Q_OBJECT

private slots:
    void savedProfileGivesAnotherCameraTheSameSettings()
    {
        const CtlProcess ctl;
        PluggedCamera first{{"serial", "SVAA1"}};
        PluggedCamera second{{"serial", "SVBB2"}};
        first.setValue("CameraView", 60);
        first.setValue("HorizontalMirror", 1);
        first.setValue("PickupSensitivity", 80);
        first.setValue("saturation", 140);
        QCOMPARE(ctl.run(QStringLiteral("profile save room -d SVAA1")).exitCode, 0);
        QCOMPARE(ctl.run(QStringLiteral("profile save room -d SVAA1")).exitCode, 2);
        QVERIFY(!contentsOf(ctl.configPath() + QStringLiteral("/profiles/room.json"))
                     .contains("SVAA1"));
        QCOMPARE(ctl.run(QStringLiteral("profile apply room -d SVBB2")).exitCode, 0);
        QCOMPARE(second.value("CameraView"), 60);
        QCOMPARE(second.value("HorizontalMirror"), 1);
        QCOMPARE(second.value("PickupSensitivity"), 80);
        QCOMPARE(second.value("saturation"), 140);
        QCOMPARE(ctl.run(QStringLiteral("profile apply room --all")).exitCode, 2);
    }

    void someSettingsMakeAPartialProfile()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        QCOMPARE(ctl.run(QStringLiteral("profile save room fov mirror")).exitCode, 0);
        const QJsonObject profile =
            ctl.run(QStringLiteral("profile show room --json")).json().value("profile").toObject();
        QCOMPARE(profile.value("settings").toObject(),
                 (QJsonObject{{"fov", 120}, {"mirror", "off"}}));
    }

    void diffShowsProfileAgainstCamera()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        writeProfile(ctl, "room", R"({"fov": 90, "mirror": "off"})");
        const auto run = ctl.run(QStringLiteral("profile diff room"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, QStringLiteral("fov  120  ->  90\n"));
        QCOMPARE(camera.value("CameraView"), 120);
        camera.setValue("CameraView", 90);
        QCOMPARE(ctl.run(QStringLiteral("profile diff room")).exitCode, 2);
    }

    void wrongProfileNamesFileLineAndKey()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        writeProfile(ctl, "room", "{\n\"fvo\": 90}");
        const auto run = ctl.run(QStringLiteral("profile apply room --json"));
        QCOMPARE(run.exitCode, 64);
        QVERIFY(run.error().value("message").toString().endsWith(
            QStringLiteral("profiles/room.json:2: unknown setting \"fvo\"")));
        QCOMPARE(camera.requestCount(), std::size_t(0));
    }

    void failureInTheMiddlePutsEverythingBack()
    {
        const CtlProcess ctl;
        PluggedCamera camera;
        camera.setValue("autoFrameSwicth", 1);
        camera.setValue("brightness", 100);
        writeProfile(ctl, "room",
                     R"({"framing": "off", "fov": 60, "mirror": "on", "brightness": 150})");
        camera.fault("control-error times=1");
        const auto run = ctl.run(QStringLiteral("profile apply room --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.camera().value("restored").toBool(), true);
        QVERIFY(run.error().value("hint").toString().contains("put back"));
        QCOMPARE(camera.value("autoFrameSwicth"), 1);
        QCOMPARE(camera.value("CameraView"), 120);
        QCOMPARE(camera.value("HorizontalMirror"), 0);
        QCOMPARE(camera.value("brightness"), 100);
    }

    void exportedProfileIsImportedElsewhere()
    {
        const CtlProcess here;
        const CtlProcess there;
        writeProfile(here, "room", R"({"fov": 90})");
        const QString file = here.path(QStringLiteral("hall.json"));
        QCOMPARE(here.run(QStringList{"profile", "export", "room", "-o", file}).exitCode, 0);
        QCOMPARE(here.run(QStringLiteral("profile export room")).output.toUtf8(), contentsOf(file));
        QCOMPARE(there.run(QStringList{"profile", "import", file}).exitCode, 0);
        const auto list = there.run(QStringLiteral("profile list --json"));
        const QJsonObject entry = list.json().value("profiles").toArray().at(0).toObject();
        QCOMPARE(entry.value("name").toString(), QStringLiteral("hall"));
        QCOMPARE(entry.value("owner").toString(), QStringLiteral("user"));
        QCOMPARE(there.run(QStringLiteral("profile import /nowhere.json")).exitCode, 1);
    }

    void assignedProfilesReachTheirCameras()
    {
        const CtlProcess ctl;
        PluggedCamera first{{"serial", "SVAA1"}};
        PluggedCamera second{{"serial", "SVBB2"}};
        writeProfile(ctl, "room", R"({"fov": 90})");
        writeProfile(ctl, "hall", R"({"fov": 60})");
        QCOMPARE(ctl.run(QStringLiteral("profile assign room --model RQ-T47K")).exitCode, 0);
        QCOMPARE(ctl.run(QStringLiteral("profile assign hall -d SVBB2")).exitCode, 0);
        QCOMPARE(ctl.run(QStringLiteral("profile assign hall -d SVBB2")).exitCode, 2);
        QCOMPARE(ctl.run(QStringLiteral("profile assign nothing --all")).exitCode, 64);
        QCOMPARE(ctl.run(QStringLiteral("profile assign room")).exitCode, 64);
        const auto run = ctl.run(QStringLiteral("apply --all --json"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(first.value("CameraView"), 90);
        QCOMPARE(second.value("CameraView"), 60);
        QCOMPARE(run.camera(1).value("source").toObject(),
                 (QJsonObject{{"kind", "profile"}, {"name", "hall"}}));
        QCOMPARE(ctl.run(QStringLiteral("profile unassign -d SVBB2")).exitCode, 0);
        QCOMPARE(ctl.run(QStringLiteral("apply -d SVBB2")).exitCode, 0);
        QCOMPARE(second.value("CameraView"), 90);
    }

    void savedPictureIsAppliedWithoutAProfile()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        write(ctl.cachePath() + QStringLiteral("/device.ini"),
              "[SVAA1]\nbright=140\ncontrast=100\nsaturation=90\nimagemode=3\n");
        const auto run = ctl.run(QStringLiteral("apply --once --json"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.camera().value("source").toObject(), (QJsonObject{{"kind", "saved"}}));
        QCOMPARE(camera.value("brightness"), 140);
        QCOMPARE(camera.value("contrast"), 100);
        QCOMPARE(camera.value("saturation"), 90);
        QCOMPARE(camera.value("sharpness"), 128); // not in the file, which reads as 0
        QCOMPARE(ctl.run(QStringLiteral("apply --once")).exitCode, 2);
    }

    void applyingNeverWritesTheSavedPicture()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        const QString file = ctl.cachePath() + QStringLiteral("/device.ini");
        const QByteArray saved = "[SVAA1]\nbright=140\ncontrast=100\nsaturation=90\nsharpness=95\n";
        write(file, saved);
        writeProfile(ctl, "room", R"({"brightness": 100})");
        QCOMPARE(ctl.run(QStringLiteral("profile apply room")).exitCode, 0);
        QCOMPARE(ctl.run(QStringLiteral("apply")).exitCode, 0);
        QCOMPARE(contentsOf(file), saved);
    }

    void onceWithoutACameraIsNothingToDo()
    {
        const CtlProcess ctl;
        QCOMPARE(ctl.run(QStringLiteral("apply --once")).exitCode, 2);
        QCOMPARE(ctl.run(QStringLiteral("apply")).exitCode, 3);
    }

    /// Whenever it is killed, a file is the old or the new one.
    void killedSaveLeavesWholeFiles()
    {
        const CtlProcess ctl;
        PluggedCamera camera{{"serial", "SVAA1"}};
        const QString profile = ctl.configPath() + QStringLiteral("/profiles/room.json");
        const QString ini = ctl.cachePath() + QStringLiteral("/device.ini");
        write(ini, "[OTHER]\nbright=101\ncontrast=102\nsaturation=103\nsharpness=104\n"
                   "imagemode=3\n");
        QCOMPARE(ctl.run(QStringLiteral("profile save room")).exitCode, 0);
        QRandomGenerator random(20261122);
        int ended = 0;
        for (int round = 0; round < 120; ++round) {
            camera.setValue("brightness", 80 + round % 90);
            QProcess process;
            const bool isProfile = round % 2 == 0;
            ctl.start(process,
                      isProfile ? QStringList{"profile", "save", "room"} : QStringList{"save"});
            QVERIFY(process.waitForStarted());
            if (process.waitForFinished(random.bounded(60)))
                ++ended;
            process.kill();
            process.waitForFinished();
            QVERIFY(QJsonDocument::fromJson(contentsOf(profile)).isObject());
            const QSettings settings(ini, QSettings::IniFormat);
            QCOMPARE(settings.value(QStringLiteral("OTHER/sharpness")).toInt(), 104);
            const int saved = settings.childGroups().contains(QStringLiteral("SVAA1"))
                                  ? settings.allKeys().filter(QStringLiteral("SVAA1/")).size()
                                  : 5;
            QCOMPARE(saved, 5);
        }
        // Some were killed and some were not, or the test would show nothing.
        QVERIFY2(ended > 0 && ended < 120, qPrintable(QString::number(ended)));
        QCOMPARE(ctl.run(QStringLiteral("profile list")).exitCode, 0);
    }
};

QTEST_GUILESS_MAIN(CtlProfileTest)
#include "CtlProfileTest.moc"
