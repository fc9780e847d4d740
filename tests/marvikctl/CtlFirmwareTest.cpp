#include "CtlProcess.h"
#include "FirmwareCamera.h"

#include <csignal>
#include <QFile>
#include <QJsonDocument>
#include <QtTest>

namespace {

constexpr int kStartTimeoutMs = 60000;
constexpr int kImageBytes = 40 * 1010;
const QString kInstall = QStringLiteral("install");

QStringList install(const QString& file, const QString& options)
{
    QStringList arguments{QStringLiteral("firmware"), kInstall, file, QStringLiteral("--json")};
    return arguments + options.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

class CtlFirmwareTest : public QObject
{
    Q_OBJECT

private slots:
    void imageIsWrittenAndTheReturnIsVerified()
    {
        const CtlProcess ctl;
        FirmwareCamera camera;
        const QString file = camera.file(FirmwareCamera::image(kImageBytes));
        const auto run = ctl.run(install(file, QStringLiteral("--json-progress")));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.camera().value("from").toString(), QStringLiteral("1.0.5"));
        QCOMPARE(run.camera().value("to").toString(), QStringLiteral("1.0.6"));
        QVERIFY(run.camera().value("seconds").toDouble() > 0);
        QCOMPARE(QString::fromStdString(camera->firmware().version), QStringLiteral("1.0.6"));
        QVERIFY(camera.received() || camera->firmware().complete);
        QVERIFY(camera->isReleased());
        int last = 0;
        const QStringList lines = run.errors.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString& line : lines) {
            const QJsonObject event = QJsonDocument::fromJson(line.toUtf8()).object();
            QVERIFY2(event.value("schema").toInt() == 1, qPrintable(line));
            if (event.value("event").toString() != QLatin1String("transfer"))
                continue;
            QVERIFY(event.value("percent").toInt() > last);
            QVERIFY(event.contains("secondsLeft"));
            last = event.value("percent").toInt();
        }
        QCOMPARE(last, 100);
    }

    void versionThatTheCameraHasIsNotWrittenAgain()
    {
        const CtlProcess ctl;
        FirmwareCamera camera;
        const QString file = camera.file(FirmwareCamera::image(kImageBytes));
        QCOMPARE(ctl.run(install(file, {})).exitCode, 0);
        camera->forgetRequests();
        const auto again = ctl.run(install(file, {}));
        QCOMPARE(again.exitCode, 2);
        QCOMPARE(again.camera().value("result").toString(), QStringLiteral("nothing-to-do"));
        QCOMPARE(camera.requests(0x4000), 0);
        const auto reinstalled = ctl.run(install(file, QStringLiteral("--reinstall")));
        QCOMPARE(reinstalled.exitCode, 0);
        QCOMPARE(reinstalled.camera().value("to").toString(), QStringLiteral("1.0.6"));
    }

    void fileThatIsNamedAfterTheVersionIsNotWritten()
    {
        const CtlProcess ctl;
        FirmwareCamera camera;
        const QByteArray image = FirmwareCamera::image(kImageBytes);
        QFile named(ctl.path(QStringLiteral("camera-1.0.5.bin")));
        QVERIFY(named.open(QIODevice::WriteOnly) && named.write(image) == image.size());
        named.close();
        QCOMPARE(ctl.run(install(named.fileName(), {})).exitCode, 2);
        QVERIFY(named.rename(ctl.path(QStringLiteral("camera-1.0.55.bin"))));
        QCOMPARE(ctl.run(install(named.fileName(), QStringLiteral("--dry-run"))).exitCode, 0);
        QCOMPARE(camera.requests(0x4000), 0);
    }

    void cameraThatKeepsItsFirmwareHasFailed()
    {
        const CtlProcess ctl;
        FirmwareCamera camera;
        camera->fault("old-version");
        const auto run = ctl.run(install(camera.file(FirmwareCamera::image(kImageBytes)), {}));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("refused"));
        QCOMPARE(run.camera().value("to").toString(), QStringLiteral("1.0.5"));
    }

    void refusedStartFailsAtOnce()
    {
        const CtlProcess ctl;
        FirmwareCamera camera;
        camera->fault("refuse-start 100");
        const auto run = ctl.run(install(camera.file(FirmwareCamera::image(kImageBytes)), {}));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(camera.requests(0x4000), 3);
        QCOMPARE(camera.requests(0x4200), 0);
    }

    void unusableFileReachesNoCamera()
    {
        const CtlProcess ctl;
        FirmwareCamera camera;
        QCOMPARE(ctl.run(install(QStringLiteral("/nowhere.bin"), {})).exitCode, 1);
        QCOMPARE(ctl.run(install(camera.file({}), {})).exitCode, 1);
        QCOMPARE(ctl.run(QStringLiteral("firmware install")).exitCode, 64);
        QCOMPARE(camera.requests(), 0);
    }

    void allCamerasOneAfterTheOther()
    {
        const CtlProcess ctl;
        FirmwareCamera first;
        FirmwareCamera second;
        const QString file = first.file(FirmwareCamera::image(kImageBytes));
        const auto run = ctl.run(install(file, QStringLiteral("--all")));
        QCOMPARE(run.exitCode, 0);
        for (const int index : {0, 1})
            QCOMPARE(run.camera(index).value("to").toString(), QStringLiteral("1.0.6"));
        QCOMPARE(QString::fromStdString(second->firmware().version), QStringLiteral("1.0.6"));
    }

    void interruptStopsBeforeTheNextCameraAndNotInTheMiddleOfOne()
    {
        const CtlProcess ctl;
        FirmwareCamera first;
        FirmwareCamera second;
        QProcess process;
        ctl.start(process, install(first.file(FirmwareCamera::image(kImageBytes)),
                                   QStringLiteral("--all --json-progress")));
        process.setReadChannel(QProcess::StandardError);
        while (!process.canReadLine())
            QVERIFY(process.waitForReadyRead(kStartTimeoutMs));
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        QVERIFY(process.waitForFinished(kStartTimeoutMs));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        const QJsonArray cameras = QJsonDocument::fromJson(process.readAllStandardOutput())
                                       .object()
                                       .value("cameras")
                                       .toArray();
        QCOMPARE(cameras.at(0).toObject().value("to").toString(), QStringLiteral("1.0.6"));
        QCOMPARE(cameras.at(1).toObject().value("error").toObject().value("code").toString(),
                 QStringLiteral("stopped"));
        QCOMPARE(second.requests(0x4000), 0);
    }

    void checkWithoutAService()
    {
        const CtlProcess ctl;
        FirmwareCamera camera;
        const auto run = ctl.run(QStringLiteral("firmware check --json"));
        QCOMPARE(run.exitCode, 6);
        QCOMPARE(run.error().value("code").toString(), QStringLiteral("service"));
        QCOMPARE(run.error().value("message").toString(),
                 QStringLiteral("this build has no update service"));
    }

    void checkAsksTheService()
    {
        // The helper with the address of the test's service lies in a folder of its own, with the
        // program beside it.
        QTemporaryDir folder;
        const QString bin = QCoreApplication::applicationDirPath();
        const QString program = folder.filePath(QStringLiteral("marvikctl"));
        QVERIFY(QFile::copy(CtlProcess::program(), program));
        QVERIFY(QFile::copy(bin + QStringLiteral("/CtlTestHelper"),
                            folder.filePath(QStringLiteral("marvikctl-helper"))));
        QProcess service;
        service.start(bin + QStringLiteral("/updateservice"),
                      {"--certificates", folder.filePath("certificates"), "--offer",
                       "details=Better%20picture", "--offer",
                       "url=https://localhost/camera-2.bin"});
        QVERIFY(service.waitForReadyRead(kStartTimeoutMs));
        const QString port = QString::fromUtf8(service.readLine()).trimmed().section(' ', -1);

        CtlProcess ctl;
        ctl.setProgram(program);
        ctl.setVariable(QStringLiteral("MARVIK_TEST_SERVICE"),
                        QStringLiteral("https://localhost:") + port);
        ctl.setVariable(QStringLiteral("MARVIK_TEST_AUTHORITY"),
                        folder.filePath(QStringLiteral("certificates/authority.pem")));
        FirmwareCamera camera;
        const auto run = ctl.run(QStringLiteral("firmware check --json"));
        QVERIFY2(run.exitCode == 0, qPrintable(run.output + run.errors));
        const QJsonObject offer = run.camera().value("offer").toObject();
        QCOMPARE(offer.value("isOffered").toBool(), true);
        QCOMPARE(offer.value("url").toString(), QStringLiteral("https://localhost/camera-2.bin"));
        service.terminate();
        service.waitForFinished();
        const auto silent = ctl.run(QStringLiteral("firmware check --json"));
        QCOMPARE(silent.exitCode, 6);
        QVERIFY(silent.error().value("message").toString().startsWith("the update service: "));
    }
};

QTEST_GUILESS_MAIN(CtlFirmwareTest)
#include "CtlFirmwareTest.moc"
