#include "ProgramWindow.h"

#include <QProcess>
#include <QtTest>

namespace {

constexpr int kPatience = 30000;

} // namespace

/// The program as a process of its own.
class ProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void watcherRunsBesideTheWindow();
    void closingHidesInTheTray();
    void secondStartEndsAtOnceAndRaisesTheFirst();
    void quitEndsTheProgram();

private:
    QProcess m_program;
};

void ProgramTest::init()
{
    QVERIFY(!programWindow());
    m_program.start(QStringLiteral(MARVIK_PROGRAM), {});
    QVERIFY(m_program.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(programWindow() && ::IsWindowVisible(programWindow()), kPatience);
}

void ProgramTest::cleanup()
{
    if (m_program.state() != QProcess::NotRunning) {
        WindowProcess(programWindow()).quit();
        QVERIFY(m_program.waitForFinished(kPatience));
    }
    QTRY_VERIFY(!programWindow());
}

void ProgramTest::watcherRunsBesideTheWindow()
{
    QTRY_VERIFY_WITH_TIMEOUT(::FindWindowA("velmarin", "velmarin window"), kPatience);
    QVERIFY(!::IsWindowVisible(::FindWindowA("velmarin", "velmarin window")));
}

void ProgramTest::closingHidesInTheTray()
{
    ::PostMessageW(programWindow(), WM_CLOSE, 0, 0);
    QTRY_VERIFY_WITH_TIMEOUT(!::IsWindowVisible(programWindow()), kPatience);
    QVERIFY(!m_program.waitForFinished(500));
    QVERIFY(programWindow());
}

void ProgramTest::secondStartEndsAtOnceAndRaisesTheFirst()
{
    ::PostMessageW(programWindow(), WM_CLOSE, 0, 0);
    QTRY_VERIFY_WITH_TIMEOUT(!::IsWindowVisible(programWindow()), kPatience);

    QProcess second;
    second.start(QStringLiteral(MARVIK_PROGRAM), {});
    QVERIFY(second.waitForFinished(kPatience));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(::IsWindowVisible(programWindow()), kPatience);
    QTRY_VERIFY(!::IsIconic(programWindow()));
    QCOMPARE(m_program.state(), QProcess::Running);
}

void ProgramTest::quitEndsTheProgram()
{
    WindowProcess(programWindow()).quit();
    QVERIFY(m_program.waitForFinished(kPatience));
    QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program.exitCode(), 0);
}

QTEST_MAIN(ProgramTest)
#include "ProgramTest.moc"
