#include "CtlProcess.h"
#include "DeviceIniStore.h"
#include "PluggedCamera.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QtTest>

namespace {

constexpr int kTimeoutMs = 20000;
constexpr int kSaves = 1000;
constexpr int kKills = 150;

/// What nobody writes during a test.
const QByteArray kBystander =
    "[SVAA-other]\nbright=101\ncontrast=102\nsaturation=103\nsharpness=104\nimagemode=3\n";

const QString kCameraSerial = QStringLiteral("SVAA1");
const QString kWindowSerial = QStringLiteral("SVAA2");

/// Any moment of what takes @p ns.
void waitForPartOf(qint64 ns)
{
    QThread::usleep(static_cast<unsigned long>(
        QRandomGenerator::global()->bounded(static_cast<double>(ns)) / 1000));
}

} // namespace

/// The file with the saved settings, while several programs write it or are killed.
class CtlSavedFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowAndCommandLineSaveAtOnce();
    void killedSaveLosesNothing();
    void killedApplyLeavesNothingBehind();

private:
    [[nodiscard]] static bool bystanderIsWhole()
    {
        const auto saved = DeviceIniStore().read(QStringLiteral("SVAA-other"));
        return saved && saved->bright == 101 && saved->contrast == 102 &&
               saved->saturation == 103 && saved->sharpness == 104 && saved->imageMode == 3;
    }
    /// Kills @p command after a part of the time that it takes.
    void kill(const QStringList& command, qint64 longestNs) const;

    std::unique_ptr<CtlProcess> m_ctl;
    std::unique_ptr<PluggedCamera> m_camera;
    QByteArray m_previousCache;
};

void CtlSavedFileTest::init()
{
    QCoreApplication::setApplicationName(QStringLiteral("MarvikTools"));
    m_ctl = std::make_unique<CtlProcess>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", kCameraSerial.toStdString()}});
    // The test writes the same file as the processes.
    m_previousCache = qgetenv("XDG_CACHE_HOME");
    qputenv("XDG_CACHE_HOME", QFile::encodeName(m_ctl->path(QStringLiteral("cache"))));
    QVERIFY(QDir().mkpath(m_ctl->cachePath()));
    QFile file(m_ctl->cachePath() + QStringLiteral("/device.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(kBystander), kBystander.size());
    file.close();
    QVERIFY(bystanderIsWhole());
}

void CtlSavedFileTest::cleanup()
{
    qputenv("XDG_CACHE_HOME", m_previousCache);
    m_camera.reset();
    m_ctl.reset();
}

void CtlSavedFileTest::windowAndCommandLineSaveAtOnce()
{
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(m_ctl->run(QStringLiteral("save")).exitCode, 0);
    const qint64 wholeNs = timer.nsecsElapsed();
    for (int round = 0; round < kSaves; ++round) {
        const int value = 78 + round % 101;
        m_camera->setValue("brightness", value);
        QProcess save;
        m_ctl->start(save, {QStringLiteral("save")});
        QVERIFY(save.waitForStarted(kTimeoutMs));
        waitForPartOf(wholeNs);
        PictureParameters picture;
        picture.bright = 178 - round % 101;
        // The window saves with the same store.
        QVERIFY(DeviceIniStore().write(kWindowSerial, picture));
        QVERIFY(save.waitForFinished(kTimeoutMs));
        QCOMPARE(save.exitCode(), 0);
        const auto theirs = DeviceIniStore().read(kCameraSerial);
        const auto ours = DeviceIniStore().read(kWindowSerial);
        QVERIFY(theirs && ours);
        QCOMPARE(theirs->bright, value);
        QCOMPARE(ours->bright, picture.bright);
        QVERIFY(bystanderIsWhole());
    }
}

void CtlSavedFileTest::kill(const QStringList& command, qint64 longestNs) const
{
    QProcess process;
    m_ctl->start(process, command);
    QVERIFY(process.waitForStarted(kTimeoutMs));
    waitForPartOf(longestNs);
    process.kill();
    QVERIFY(process.waitForFinished(kTimeoutMs));
}

void CtlSavedFileTest::killedSaveLosesNothing()
{
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(m_ctl->run(QStringLiteral("save")).exitCode, 0);
    const qint64 wholeNs = timer.nsecsElapsed();
    for (int round = 0; round < kKills; ++round) {
        const auto before = DeviceIniStore().read(kCameraSerial);
        QVERIFY(before);
        const int value = 78 + round % 101;
        m_camera->setValue("brightness", value);
        kill({QStringLiteral("save")}, wholeNs);
        const auto after = DeviceIniStore().read(kCameraSerial);
        QVERIFY(after);
        QVERIFY2(after->bright == before->bright || after->bright == value,
                 qPrintable(QString::number(after->bright)));
        QCOMPARE(after->contrast, before->contrast);
        QVERIFY(bystanderIsWhole());
    }
    m_camera->setValue("brightness", 177);
    QCOMPARE(m_ctl->run(QStringLiteral("save")).exitCode, 0);
    QCOMPARE(DeviceIniStore().read(kCameraSerial)->bright, 177);
    // Nothing but the file itself, without the copies and the lock of the killed ones.
    QCOMPARE(QDir(m_ctl->cachePath()).entryList(QDir::Files | QDir::Hidden),
             QStringList(QStringLiteral("device.ini")));
}

void CtlSavedFileTest::killedApplyLeavesNothingBehind()
{
    m_camera->setValue("CameraView", 90);
    m_camera->setValue("autoFrameSwicth", 0);
    m_camera->setValue("HorizontalMirror", 1);
    m_camera->setValue("brightness", 150);
    QCOMPARE(m_ctl->run(QStringLiteral("profile save room")).exitCode, 0);
    const QString saved = m_ctl->run(QStringLiteral("profile show room")).output;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(m_ctl->run(QStringLiteral("reset")).exitCode, 0);
    const qint64 wholeNs = timer.nsecsElapsed();
    for (int round = 0; round < kKills; ++round) {
        kill({QStringLiteral("profile"), QStringLiteral("apply"), QStringLiteral("room")}, wholeNs);
        // Neither a lock nor a half-written file: the same command succeeds now.
        const auto again = m_ctl->run(QStringLiteral("profile apply room"));
        QVERIFY2(again.exitCode == 0 || again.exitCode == 2, qPrintable(again.errors));
        QCOMPARE(m_camera->value("CameraView"), 90);
        QCOMPARE(m_camera->value("HorizontalMirror"), 1);
        QCOMPARE(m_camera->value("brightness"), 150);
        QCOMPARE(m_ctl->run(QStringLiteral("profile show room")).output, saved);
        QCOMPARE(m_ctl->run(QStringLiteral("reset")).exitCode, 0);
    }
    QVERIFY(bystanderIsWhole());
}

QTEST_GUILESS_MAIN(CtlSavedFileTest)

#include "CtlSavedFileTest.moc"
