#include "SleepInhibitor.h"
#include "LogCapture.h"
#include "LoginManager.h"
#include "SystemBus.h"

#include <memory>
#include <QElapsedTimer>
#include <QtTest>

namespace {

constexpr int kPatienceMs = 10000;
constexpr int kAtOnceMs = 2000; // libraries give an answer twenty-five seconds
const QString kWhy = QStringLiteral("Firmware is written into a camera");
const QString kRefused = QStringLiteral("the system may go to sleep:");

} // namespace

/// The inhibitor against a login manager of the test's own. The tests use one bus in turn: a
/// program connects to the system's once.
class SleepInhibitorTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void asksForWhatItNeeds();
    void holdsTheLockUntilItsEnd();
    void twoHoldALockEach();
    void refusalIsLogged();
    void doesNotWaitForTheAnswer();
    void lockThatComesAfterItsEndIsGivenBack();
    void missingLoginManagerIsLogged();
    void busThatGoesAwayIsNoHarm();

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

void SleepInhibitorTest::asksForWhatItNeeds()
{
    const SleepInhibitor inhibitor(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kPatienceMs);
    QCOMPARE(m_manager->requests().constFirst(),
             (QStringList{"idle:sleep", "MarvikTools", kWhy, "block"}));
}

void SleepInhibitorTest::holdsTheLockUntilItsEnd()
{
    auto inhibitor = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->isHeld(), kPatienceMs);
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
    QCOMPARE(refusals(), 0);
    inhibitor.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->isHeld(), kPatienceMs);
}

void SleepInhibitorTest::twoHoldALockEach()
{
    auto first = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kPatienceMs);
    const SleepInhibitor second(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 2, kPatienceMs);
    first.reset();
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
}

void SleepInhibitorTest::refusalIsLogged()
{
    m_manager->setBehaviour(LoginManager::Refuse);
    const SleepInhibitor inhibitor(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(refusals(), 1, kPatienceMs);
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
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kPatienceMs);
    m_manager->grantNow();
    // The test's own copy is gone when grantNow() has returned.
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
}

void SleepInhibitorTest::lockThatComesAfterItsEndIsGivenBack()
{
    m_manager->setBehaviour(LoginManager::Hesitate);
    auto inhibitor = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->requests().size(), 1, kPatienceMs);
    inhibitor.reset();
    m_manager->grantNow();
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->isHeld(), kPatienceMs);
    QCOMPARE(refusals(), 0);
}

void SleepInhibitorTest::missingLoginManagerIsLogged()
{
    m_manager.reset();
    const SleepInhibitor inhibitor(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(refusals(), 1, kPatienceMs);
}

/// The last test: the program does not connect again.
void SleepInhibitorTest::busThatGoesAwayIsNoHarm()
{
    auto inhibitor = std::make_unique<SleepInhibitor>(kWhy);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->isHeld(), kPatienceMs);
    m_bus.stop();
    // The lock is the descriptor's and not the bus's.
    QTest::qWait(200);
    QVERIFY(m_manager->isHeld());
    inhibitor.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!m_manager->isHeld(), kPatienceMs);
    const SleepInhibitor another(kWhy);
    QTRY_COMPARE_WITH_TIMEOUT(refusals(), 1, kPatienceMs);
}

QTEST_GUILESS_MAIN(SleepInhibitorTest)
#include "SleepInhibitorTest.moc"
