#include "SleepInhibitor.h"
#include "LogCapture.h"
#include "LoginManager.h"
#include "SystemBus.h"

#include <memory>
#include <QElapsedTimer>
#include <QtTest>

namespace {

constexpr int kTimeoutMs = 10000;
constexpr int kAtOnceMs = 2000; // the library's own time-out is twenty-five seconds
const QString kWhy = QStringLiteral("Firmware is written into a camera");
const QString kRefused = QStringLiteral("the system may go to sleep:");

} // namespace

/// The inhibitor with a login manager of the test. All tests share one bus, because a program
/// connects to the system bus only once.
class SleepInhibitorTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void requestsTheRightInhibitor();
    void holdsTheLockDuringItsLifetime();
    void twoInhibitorsHoldTwoLocks();
    void refusalIsLogged();
    void doesNotWaitForTheAnswer();
    void lockGrantedAfterItsEndIsReleased();
    void missingLoginManagerIsLogged();
    void lostBusIsHarmless();

private:
    [[nodiscard]] int refusals() const { return m_log->texts().filter(kRefused).size(); }

    SystemBus m_bus;
    std::unique_ptr<LoginManager> m_manager;
    std::unique_ptr<LogCapture> m_log;
};

void SleepInhibitorTest::initTestCase()
{
    QVERIFY(!m_bus.address().isEmpty());
}

void SleepInhibitorTest::init()
{
    m_manager = std::make_unique<LoginManager>(m_bus.address());
    QVERIFY(m_manager->isRegistered());
    m_log = std::make_unique<LogCapture>();
}

void SleepInhibitorTest::cleanup()
{
    m_log.reset();
    m_manager.reset();
}

void SleepInhibitorTest::requestsTheRightInhibitor()
{
    const SleepInhibitor inhibitor(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kTimeoutMs);
    QCOMPARE(m_manager->requests().constFirst(),
             (QStringList{"idle:shutdown:sleep", "MarvikTools", kWhy, "block"}));
}

void SleepInhibitorTest::holdsTheLockDuringItsLifetime()
{
    auto inhibitor = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->isHeld(), kTimeoutMs);
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
    QCOMPARE(refusals(), 0);
    inhibitor.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->isHeld(), kTimeoutMs);
}

void SleepInhibitorTest::twoInhibitorsHoldTwoLocks()
{
    auto first = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kTimeoutMs);
    const SleepInhibitor second(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 2, kTimeoutMs);
    first.reset();
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
}

void SleepInhibitorTest::refusalIsLogged()
{
    m_manager->setBehaviour(LoginManager::Refuse);
    const SleepInhibitor inhibitor(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(refusals(), 1, kTimeoutMs);
    QCOMPARE(m_log->texts().filter(QStringLiteral("not today")).size(), 1);
    QVERIFY(!m_manager->isHeld());
}

void SleepInhibitorTest::doesNotWaitForTheAnswer()
{
    m_manager->setBehaviour(LoginManager::Hesitate);
    QElapsedTimer timer;
    timer.start();
    const SleepInhibitor inhibitor(kWhy);
    QVERIFY(timer.elapsed() < kAtOnceMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kTimeoutMs);
    m_manager->grantNow();
    // The test has closed its own copy when grantNow() returns.
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
}

void SleepInhibitorTest::lockGrantedAfterItsEndIsReleased()
{
    m_manager->setBehaviour(LoginManager::Hesitate);
    auto inhibitor = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kTimeoutMs);
    inhibitor.reset();
    m_manager->grantNow();
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->isHeld(), kTimeoutMs);
    QCOMPARE(refusals(), 0);
}

void SleepInhibitorTest::missingLoginManagerIsLogged()
{
    m_manager.reset();
    const SleepInhibitor inhibitor(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(refusals(), 1, kTimeoutMs);
}

/// The last test: the program does not connect again.
void SleepInhibitorTest::lostBusIsHarmless()
{
    auto inhibitor = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->isHeld(), kTimeoutMs);
    // The manager holds the lock until its answer has arrived. Answers arrive in their order.
    m_manager->setBehaviour(LoginManager::Refuse);
    const SleepInhibitor later(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(refusals(), 1, kTimeoutMs);
    m_bus.stop();
    // The descriptor holds the lock, not the connection to the bus.
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
    inhibitor.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->isHeld(), kTimeoutMs);
    const SleepInhibitor another(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(refusals(), 2, kTimeoutMs);
}

QTEST_GUILESS_MAIN(SleepInhibitorTest)
#include "SleepInhibitorTest.moc"
