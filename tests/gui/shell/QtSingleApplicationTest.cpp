#include "QtSingleApplication.h"
#include "ShownHome.h"
#include "TransparentBtn.h"
#include "TransPrewBtn.h"

#include <atomic>
#include <memory>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>
#include <thread>

namespace {

QtSingleApplication& application()
{
    return *qobject_cast<QtSingleApplication*>(qApp);
}

QString socketPath()
{
    return QtSingleApplication::instanceDirectory() + QStringLiteral("/marviktools.socket");
}

/// A sender of arbitrary bytes that does not use the program's code.
class RawSender
{
public:
    explicit RawSender(const QByteArray& bytes)
    {
        m_socket.connectToServer(socketPath());
        m_connected = m_socket.waitForConnected(2000);
        m_socket.write(bytes);
        m_socket.flush();
    }
    [[nodiscard]] bool isConnected() const { return m_connected; }
    /// Whether the receiver has accepted the message or closed the connection.
    [[nodiscard]] bool isServed() const
    {
        return m_socket.bytesAvailable() > 0 || m_socket.state() == QLocalSocket::UnconnectedState;
    }

private:
    QLocalSocket m_socket;
    bool m_connected = false;
};

} // namespace

/// The running instance, and the messages of later starts to it.
class QtSingleApplicationTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void firstInstanceStaysPrimary();
    void filesAreAccessibleOnlyToTheUser();
    void messageIsPassedOn();
    void longestMessageIsPassedOn();
    void badMessagesAreIgnored_data();
    void badMessagesAreIgnored();
    void slowSenderDoesNotBlockOthers();
    void manySendersAreServed();
    void messageThatCannotBeSentIsRefused();
    void sendingWithoutAReceiverEndsInTime();

    void messageRaisesTheActivationWindow();
    void windowStaysHiddenWithoutActivation();
    void anyMessageRestoresTheSettingsPageWithItsButtons();

private:
    std::unique_ptr<QSignalSpy> m_received;
};

void QtSingleApplicationTest::initTestCase()
{
    QVERIFY(!application().isRunning());
}

void QtSingleApplicationTest::init()
{
    m_received =
        std::make_unique<QSignalSpy>(&application(), &QtSingleApplication::messageReceived);
}

void QtSingleApplicationTest::cleanup()
{
    application().setActivationWindow(nullptr);
}

void QtSingleApplicationTest::firstInstanceStaysPrimary()
{
    QVERIFY(!application().isRunning());
    QVERIFY(QFile::exists(socketPath()));
}

void QtSingleApplicationTest::filesAreAccessibleOnlyToTheUser()
{
    constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QCOMPARE(QFileInfo(socketPath()).permissions() & others, QFile::Permissions());
    QCOMPARE(QFileInfo(QtSingleApplication::instanceDirectory()).permissions() & others,
             QFile::Permissions());
}

void QtSingleApplicationTest::messageIsPassedOn()
{
    bool taken = false;
    std::atomic<bool> done{false};
    std::thread sender([&] {
        taken = application().sendMessage(QStringLiteral("raise_window_noop 窗口"), 5000);
        done = true;
    });
    const bool ended = QTest::qWaitFor([&] { return done.load(); });
    sender.join();
    QVERIFY(ended);
    QVERIFY(taken);
    QCOMPARE(m_received->count(), 1);
    QCOMPARE(m_received->first().first().toString(), QStringLiteral("raise_window_noop 窗口"));
}

void QtSingleApplicationTest::longestMessageIsPassedOn()
{
    const QByteArray message(QtSingleApplication::kMaxMessageBytes, 'm');
    const RawSender sender(message + '\0');
    QTRY_COMPARE(m_received->count(), 1);
    QCOMPARE(m_received->first().first().toString().toUtf8(), message);
}

void QtSingleApplicationTest::badMessagesAreIgnored_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one byte too long") << QByteArray(4097, 'm') + '\0';
    QTest::newRow("much too long") << QByteArray(1000000, 'm') + '\0';
    QTest::newRow("not UTF-8") << QByteArray("\xC3\x28\0", 3);
    QTest::newRow("cut within a character") << QByteArray("raise \xE7\xAA\0", 9);
    QTest::newRow("random") << QByteArray::fromHex("ff00fe01aa55ffff");
}

void QtSingleApplicationTest::badMessagesAreIgnored()
{
    QFETCH(const QByteArray, bytes);
    const RawSender sender(bytes);
    QVERIFY(sender.isConnected());
    QTRY_VERIFY(sender.isServed());
    QCOMPARE(m_received->count(), 0);
    const RawSender good(QByteArray("good\0", 5));
    QTRY_COMPARE(m_received->count(), 1);
}

void QtSingleApplicationTest::slowSenderDoesNotBlockOthers()
{
    const RawSender slow("raise_");
    const RawSender silent("");
    QElapsedTimer clock;
    clock.start();
    const RawSender good(QByteArray("good\0", 5));
    QTRY_COMPARE(m_received->count(), 1);
    QVERIFY(clock.elapsed() < 1000);
    QTRY_VERIFY(slow.isServed() && silent.isServed());
    QCOMPARE(m_received->count(), 1);
}

void QtSingleApplicationTest::manySendersAreServed()
{
    constexpr int count = 20;
    std::vector<std::unique_ptr<RawSender>> senders;
    senders.reserve(count);
    for (int i = 0; i < count; ++i)
        senders.push_back(std::make_unique<RawSender>(QByteArray("raise_window_noop\0", 18)));
    QTRY_COMPARE(m_received->count(), count);
}

void QtSingleApplicationTest::messageThatCannotBeSentIsRefused()
{
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!application().sendMessage(QString(4097, QLatin1Char('m')), 5000));
    QVERIFY(!application().sendMessage(QString(1366, QChar(0x7A97)), 5000)); // 4098 bytes
    QVERIFY(!application().sendMessage(QStringLiteral("a") + QChar(0) + QStringLiteral("b"), 5000));
    QVERIFY(clock.elapsed() < 500);
}

void QtSingleApplicationTest::sendingWithoutAReceiverEndsInTime()
{
    const QTemporaryDir elsewhere;
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", elsewhere.path().toLocal8Bit());
    QElapsedTimer clock;
    clock.start();
    const bool taken = application().sendMessage(QStringLiteral("raise_window_noop"), 300);
    const qint64 elapsed = clock.elapsed();
    qputenv("XDG_RUNTIME_DIR", before);
    QVERIFY(!taken);
    QVERIFY2(elapsed >= 250 && elapsed < 1500, qPrintable(QString::number(elapsed)));
}

void QtSingleApplicationTest::messageRaisesTheActivationWindow()
{
    QWidget window;
    window.resize(200, 100);
    application().setActivationWindow(&window, true);
    const RawSender first(QByteArray("x\0", 2));
    QTRY_VERIFY(window.isVisible());
    QTRY_VERIFY(window.isActiveWindow());
    window.showMinimized();
    QTRY_VERIFY(window.isMinimized());
    const RawSender second(QByteArray("x\0", 2));
    QTRY_VERIFY(!window.isMinimized());
    QVERIFY(window.isVisible());
}

void QtSingleApplicationTest::windowStaysHiddenWithoutActivation()
{
    QWidget window;
    application().setActivationWindow(&window, false);
    const RawSender sender(QByteArray("x\0", 2));
    QTRY_COMPARE(m_received->count(), 1);
    QVERIFY(!window.isVisible());
}

void QtSingleApplicationTest::anyMessageRestoresTheSettingsPageWithItsButtons()
{
    ShownHome home;
    QVERIFY(home.isPlaced());
    application().setActivationWindow(&home.window(), true);
    const QMetaObject::Connection connection =
        connect(&application(), &QtSingleApplication::messageReceived, &home.window(),
                &SorvantaHome::slotActivateWindow);
    QVERIFY(home.openSettings());
    home.closeToTray();
    QVERIFY(home.window().isHidden());
    const RawSender sender(QByteArray("whatever\0", 9));
    QTRY_VERIFY(home.window().isVisible());
    QTRY_VERIFY(home.window().isActiveWindow());
    QCOMPARE(home.page(), int(SvtaPagesView::SettingPage));
    QTRY_VERIFY(home.find<TransPrewBtn>()->isVisible());
    QVERIFY(home.find<TransparentBtn>()->isVisible());
    disconnect(connection);
}

int main(int argc, char** argv)
{
    QtSingleApplication application(argc, argv, true);
    QtSingleApplicationTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "QtSingleApplicationTest.moc"
