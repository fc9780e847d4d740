#include "LogCapture.h"
#include "PluggedCamera.h"
#include "UVCCamera.h"
#include "UVCHid.h"

#include <chrono>
#include <functional>
#include <QElapsedTimer>
#include <QtTest>
#include <random>
#include <thread>

namespace {

constexpr int kReadMirror = 0x5090;
constexpr int kWriteMirror = 0x5091;
constexpr int kStore = 0x5100;
constexpr int kVideoFormat = 0x5020;
/// The value of the camera's mirror register in these tests, as a good answer is read.
constexpr int kMirror = 5;

constexpr qint64 kReadTimeoutMs = 3000;
constexpr qint64 kWriteTimeoutMs = 1000;
/// Additional time that a busy machine may need.
constexpr qint64 kSlackMs = 900;

const QString kOpenFailed(QChar(0xFFFF));
const QMap<QString, int> kUntouched{{"width", -7}};
const QMap<QString, int> kRealFormat{{"width", 1920}, {"height", 1080}, {"streamon", 0}};

/// One operation on a camera that has the fault of the row.
class FaultyCamera
{
public:
    FaultyCamera()
    {
        m_camera.setValue("HorizontalMirror", kMirror);
        m_hid.createHandleWithPath(m_camera.hidPath());
        // A request whose answer an old report can repeat.
        m_hid.readInfoFromDevice(0x5001);
    }

    template <typename Operation>
    auto run(const QString& fault, Operation operation)
    {
        m_camera.fault(fault.toStdString());
        QElapsedTimer timer;
        timer.start();
        auto result = operation(m_hid, m_camera.hidPath().toUtf8());
        m_elapsedMs = timer.elapsed();
        return result;
    }

    [[nodiscard]] qint64 elapsedMs() const { return m_elapsedMs; }
    /// Whether only the persistent handle is open.
    [[nodiscard]] bool isClosed() { return m_camera.waitFor("hid=1"); }
    PluggedCamera& camera() { return m_camera; }
    UVCHid& hid() { return m_hid; }

private:
    PluggedCamera m_camera;
    UVCHid m_hid;
    qint64 m_elapsedMs = 0;
};

QString readMirror(UVCHid& hid, const QByteArray&)
{
    return hid.readInfoFromDevice(kReadMirror);
}

int writeMirror(UVCHid& hid, const QByteArray&)
{
    return hid.writeInfoToDevice2(1, kWriteMirror);
}

int store(UVCHid& hid, const QByteArray&)
{
    return hid.writeInfoToDevice(QString(), kStore);
}

bool probe(UVCHid&, const QByteArray& path)
{
    return UVCHid::getCameraConnectionStatus(path.constData(), 0xB206, 0xB215);
}

QByteArray garbage(int size)
{
    std::mt19937 random(20); // NOLINT: the same bytes in every run
    std::uniform_int_distribution<int> byte(1, 255);
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes.append(static_cast<char>(byte(random)));
    return bytes;
}

} // namespace

/// Every operation with every way in which a camera can fail to answer.
class ExchangeFaultTest : public QObject
{
    Q_OBJECT

private slots:
    void faultMakesTheReadReturnItsFailureValue_data();
    void faultMakesTheReadReturnItsFailureValue();
    void faultMakesTheVideoFormatReturnItsFailureValue_data();
    void faultMakesTheVideoFormatReturnItsFailureValue();
    void faultDeterminesTheResultOfTheWrite_data();
    void faultDeterminesTheResultOfTheWrite();
    void faultDeterminesTheResultOfTheProbe_data();
    void faultDeterminesTheResultOfTheProbe();
    void exchangesSucceedWhenTheFaultIsCleared();
    void lateAnswerIsNeverUsedForAnotherCommand();
    void silentCameraIsLogged();
    void failedWriteIsLogged();
    void interfaceThatCannotBeOpenedIsLogged();
    void linkToAnInterfaceThatCannotBeOpenedFails();
    void garbageSerialNumberIsReadUpToItsEnd();
    void tooLargeLengthReadsNothingBeyondTheReport();
    void cameraThatLeavesDuringAnExchangeEndsIt();
    void cameraThatLeavesDuringTheWaitEndsIt();
    void cameraThatLeftAndCameBackAnswersAgain();
};

namespace {

void addRow(const char* fault, const QString& value, qint64 fromMs, qint64 toMs)
{
    QTest::newRow(fault) << QString::fromLatin1(fault) << value << fromMs << toMs;
}

void addColumns()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("value");
    QTest::addColumn<qint64>("fromMs");
    QTest::addColumn<qint64>("toMs");
}

constexpr qint64 kAtOnceMs = 900;

} // namespace

#define VERIFY_DURATION(faulty)                                                                    \
    do {                                                                                           \
        QFETCH(qint64, fromMs);                                                                    \
        QFETCH(qint64, toMs);                                                                      \
        const QByteArray took = QByteArray::number((faulty).elapsedMs()) + " ms";                  \
        QVERIFY2((faulty).elapsedMs() >= fromMs, took.constData());                                \
        QVERIFY2((faulty).elapsedMs() <= toMs, took.constData());                                  \
        QVERIFY((faulty).isClosed());                                                              \
    } while (false)

void ExchangeFaultTest::faultMakesTheReadReturnItsFailureValue_data()
{
    addColumns();
    const QString good = QString::number(kMirror);
    addRow("noreply", {}, kReadTimeoutMs, kReadTimeoutMs + kSlackMs);
    addRow("late 600", good, 600, 600 + kSlackMs);
    addRow("late 2500", good, 2500, 2500 + kSlackMs);
    addRow("late 3600", {}, kReadTimeoutMs, 3500);
    addRow("wrongecho", {}, 0, kAtOnceMs);
    addRow("status 1", {}, 0, kAtOnceMs);
    addRow("status 0x01000000", {}, 0, kAtOnceMs);
    addRow("short 1", {}, 0, kAtOnceMs);
    addRow("short 5", QStringLiteral("0"), 0, kAtOnceMs); // only the echo has arrived
    addRow("oversize 65535", QStringLiteral("0"), 0, kAtOnceMs);
    addRow("oversize 1011", QStringLiteral("0"), 0, kAtOnceMs);
    addRow("oversize 0", QStringLiteral("0"), 0, kAtOnceMs);
    addRow("badcrc", good, 0, kAtOnceMs);
    addRow("stale 1", {}, 0, kAtOnceMs);
    addRow("stale 30", {}, 0, kAtOnceMs);
    addRow("readerror", {}, 0, kAtOnceMs);
    addRow("writeerror", {}, 0, kAtOnceMs);
    addRow("open-error", kOpenFailed, 0, kAtOnceMs);
}

void ExchangeFaultTest::faultMakesTheReadReturnItsFailureValue()
{
    QFETCH(QString, fault);
    QFETCH(QString, value);
    FaultyCamera faulty;
    QCOMPARE(faulty.run(fault, readMirror), value);
    VERIFY_DURATION(faulty);
}

void ExchangeFaultTest::faultMakesTheVideoFormatReturnItsFailureValue_data()
{
    addColumns();
    const QString good = QStringLiteral("real");
    const QString failed = QStringLiteral("failed");
    addRow("noreply", failed, kReadTimeoutMs, kReadTimeoutMs + kSlackMs);
    addRow("late 600", good, 600, 600 + kSlackMs);
    addRow("wrongecho", failed, 0, kAtOnceMs);
    addRow("status 1", failed, 0, kAtOnceMs);
    addRow("short 1", failed, 0, kAtOnceMs);
    addRow("oversize 65535", good, 0, kAtOnceMs);
    addRow("badcrc", good, 0, kAtOnceMs);
    addRow("stale 1", failed, 0, kAtOnceMs);
    addRow("readerror", failed, 0, kAtOnceMs);
    addRow("writeerror", failed, 0, kAtOnceMs);
    addRow("open-error", QStringLiteral("untouched"), 0, kAtOnceMs);
}

void ExchangeFaultTest::faultMakesTheVideoFormatReturnItsFailureValue()
{
    QFETCH(QString, fault);
    QFETCH(QString, value);
    FaultyCamera faulty;
    QMap<QString, int> format = kUntouched;
    const bool done = faulty.run(fault, [&format](UVCHid& hid, const QByteArray&) {
        return hid.readResolutionFromDevice(kVideoFormat, format);
    });
    QCOMPARE(done, value != QLatin1String("failed"));
    QCOMPARE(format, value == QLatin1String("real") ? kRealFormat : kUntouched);
    VERIFY_DURATION(faulty);
}

void ExchangeFaultTest::faultDeterminesTheResultOfTheWrite_data()
{
    addColumns();
    const QString good = QStringLiteral("0");
    const QString failed = QStringLiteral("-1");
    addRow("noreply", failed, kWriteTimeoutMs, kWriteTimeoutMs + kSlackMs);
    addRow("late 600", good, 600, 600 + kSlackMs);
    addRow("late 1600", failed, kWriteTimeoutMs, 1500);
    addRow("wrongecho", good, 0, kAtOnceMs); // the status alone decides
    addRow("status 1", failed, 0, kAtOnceMs);
    addRow("status 0x80000000", failed, 0, kAtOnceMs);
    addRow("short 1", good, 0, kAtOnceMs);
    addRow("oversize 65535", good, 0, kAtOnceMs);
    addRow("badcrc", good, 0, kAtOnceMs);
    addRow("stale 1", good, 0, kAtOnceMs);
    addRow("readerror", good, 0, kAtOnceMs); // the camera has received the value
    addRow("writeerror", failed, kWriteTimeoutMs, kWriteTimeoutMs + kSlackMs);
    addRow("open-error", failed, 0, kAtOnceMs);
}

void ExchangeFaultTest::faultDeterminesTheResultOfTheWrite()
{
    QFETCH(QString, fault);
    QFETCH(QString, value);
    {
        FaultyCamera faulty;
        QCOMPARE(QString::number(faulty.run(fault, writeMirror)), value);
        VERIFY_DURATION(faulty);
    }
    FaultyCamera faulty;
    QCOMPARE(QString::number(faulty.run(fault, store)), value);
    VERIFY_DURATION(faulty);
}

void ExchangeFaultTest::faultDeterminesTheResultOfTheProbe_data()
{
    addColumns();
    const QString good = QStringLiteral("connected");
    addRow("noreply", {}, kReadTimeoutMs, kReadTimeoutMs + kSlackMs);
    addRow("late 600", good, 600, 600 + kSlackMs);
    addRow("wrongecho", {}, 0, kAtOnceMs);
    addRow("status 1", {}, 0, kAtOnceMs);
    addRow("short 1", {}, 0, kAtOnceMs);
    addRow("oversize 65535", good, 0, kAtOnceMs);
    addRow("oversize 0", {}, 0, kAtOnceMs); // an answer without payload has no information
    addRow("badcrc", good, 0, kAtOnceMs);
    addRow("stale 1", {}, 0, kAtOnceMs);
    addRow("readerror", {}, 0, kAtOnceMs);
    addRow("writeerror", {}, 0, kAtOnceMs);
    addRow("open-error", {}, 0, kAtOnceMs);
}

void ExchangeFaultTest::faultDeterminesTheResultOfTheProbe()
{
    QFETCH(QString, fault);
    QFETCH(QString, value);
    FaultyCamera faulty;
    QCOMPARE(faulty.run(fault, probe), !value.isEmpty());
    VERIFY_DURATION(faulty);
}

void ExchangeFaultTest::exchangesSucceedWhenTheFaultIsCleared()
{
    FaultyCamera faulty;
    QCOMPARE(faulty.run(QStringLiteral("status 1 times=2"), readMirror), QString());
    QCOMPARE(faulty.hid().readInfoFromDevice(kReadMirror), QString());
    QCOMPARE(faulty.hid().readInfoFromDevice(kReadMirror), QString::number(kMirror));
}

void ExchangeFaultTest::lateAnswerIsNeverUsedForAnotherCommand()
{
    FaultyCamera faulty;
    faulty.camera().setValue("CameraView", 90);
    // The answer to the write arrives while the following read waits for its own.
    QCOMPARE(faulty.run(QStringLiteral("late 1300 cmd=0x5091"), writeMirror), -1);
    faulty.camera().fault("late 600");
    QCOMPARE(faulty.hid().readInfoFromDevice(0x50A0), QString());
    QTest::qWait(700);
    faulty.camera().clearFaults();
    QCOMPARE(faulty.hid().readInfoFromDevice(0x50A0), QStringLiteral("90"));
}

void ExchangeFaultTest::silentCameraIsLogged()
{
    FaultyCamera faulty;
    const LogCapture log;
    faulty.run(QStringLiteral("noreply"), readMirror);
    const QStringList lines =
        log.texts().filter(QRegularExpression(QStringLiteral("Timeout or error")));
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().startsWith(QLatin1String("UVCHid::readInfoFromDevice ")));
}

void ExchangeFaultTest::failedWriteIsLogged()
{
    FaultyCamera faulty;
    const LogCapture log;
    faulty.run(QStringLiteral("writeerror"), readMirror);
    QVERIFY(log.contains(QStringLiteral("hid_write error")));
}

void ExchangeFaultTest::interfaceThatCannotBeOpenedIsLogged()
{
    FaultyCamera faulty;
    const LogCapture log;
    faulty.run(QStringLiteral("open-error"), readMirror);
    QVERIFY(log.contains(QStringLiteral("HID设备打开失败!")));
}

void ExchangeFaultTest::linkToAnInterfaceThatCannotBeOpenedFails()
{
    PluggedCamera camera;
    camera.fault("open-error");
    const LogCapture log;
    UVCCamera program;
    program.setCurrentDevicePath(camera.hidPath());
    QVERIFY(!program.initHid());
    QVERIFY(log.texts(QtCriticalMsg).contains(QStringLiteral("Open device hid failed.")));
    QVERIFY(log.contains(QStringLiteral("Create hid handle failed.")));
    QCOMPARE(program.getCameraView(), 0);
    QCOMPARE(program.getSerialNumber(), QString());
    QVERIFY(!program.setCameraView(60));
    QVERIFY(camera.isReleased());
}

void ExchangeFaultTest::garbageSerialNumberIsReadUpToItsEnd()
{
    const QByteArray serial = garbage(1010);
    PluggedCamera camera{{"serial", serial.toStdString()}};
    UVCHid hid;
    QVERIFY(hid.createHandleWithPath(camera.hidPath()));
    QCOMPARE(hid.readInfoFromDevice(0x5010), QString::fromLocal8Bit(serial));
}

void ExchangeFaultTest::tooLargeLengthReadsNothingBeyondTheReport()
{
    PluggedCamera camera{{"serial", std::string(1010, 's')}};
    UVCHid hid;
    QVERIFY(hid.createHandleWithPath(camera.hidPath()));
    camera.fault("oversize 65535");
    QCOMPARE(hid.readInfoFromDevice(0x5010), QString(1010, QLatin1Char('s')));
    QCOMPARE(hid.readInfoFromDevice(0x5001).count(QLatin1Char('.')), 1009);
}

void ExchangeFaultTest::cameraThatLeavesDuringAnExchangeEndsIt()
{
    const std::function<void(FaultyCamera&)> operations[] = {
        [](FaultyCamera& c) { QCOMPARE(c.run("unplug-at 1", readMirror), QString()); },
        [](FaultyCamera& c) { QCOMPARE(c.run("unplug-at 1", probe), false); },
        [](FaultyCamera& c) { c.run("unplug-at 1", writeMirror); },
        [](FaultyCamera& c) { c.run("unplug-at 1", store); },
    };
    for (const auto& operation : operations) {
        FaultyCamera faulty;
        operation(faulty);
        QVERIFY(faulty.elapsedMs() < kAtOnceMs);
        QVERIFY(faulty.camera().waitFor("offbus"));
        QCOMPARE(faulty.hid().readInfoFromDevice(kReadMirror), kOpenFailed);
    }
}

void ExchangeFaultTest::cameraThatLeavesDuringTheWaitEndsIt()
{
    FaultyCamera faulty;
    std::thread puller([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        // A separate connection: the camera's is in use on the other thread.
        virtualcamera::VirtualCameraClient client;
        for (const auto& camera : client.list()) {
            if (camera.onBus)
                client.unplug(camera.id);
        }
    });
    const QString answer = faulty.run(QStringLiteral("noreply"), readMirror);
    puller.join();
    QCOMPARE(answer, QString());
    QVERIFY(faulty.elapsedMs() >= 400);
    QVERIFY(faulty.elapsedMs() < 400 + kSlackMs);
}

void ExchangeFaultTest::cameraThatLeftAndCameBackAnswersAgain()
{
    PluggedCamera camera;
    UVCCamera program;
    for (int i = 0; i < 5; ++i) {
        program.setCurrentDevicePath(camera.hidPath());
        QVERIFY(program.initHid());
        QCOMPARE(program.getCameraView(), 120);
        camera.unplug();
        QCOMPARE(program.getCameraView(), 0);
        QVERIFY(!program.setCameraView(60));
        camera.plug();
    }
}

QTEST_GUILESS_MAIN(ExchangeFaultTest)
#include "ExchangeFaultTest.moc"
