#include "ProgramMutexNames.h"
#include "ProgramWindow.h"

#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

// After qt_windows.h, which it needs.
#include <shellapi.h>

namespace {

constexpr int kTimeoutMs = 30000;

} // namespace

/// The program in a separate process.
class ProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void listIsShownAfterTheStart();
    void watcherRunsBesideTheWindow();
    void closingHidesTheWindowInTheTray();
    void clickInTheTrayRaisesTheWindow();
    void secondStartEndsAtOnceAndRaisesTheFirst();
    void iconComesBackWhenTheTaskBarIsNew();
    void quitInTheTraysMenuEndsTheProgram();
    void endOfTheEventLoopEndsTheProgram();
    void endOfTheSessionIsNotHeldUp_data();
    void endOfTheSessionIsNotHeldUp();
    void cancelledEndOfTheSessionChangesNothing();
    void installersNoticeTheProgram();

private:
    /// Sends the program an event of its tray icon, as the shell does.
    static void sendTrayEvent(WORD event, const QPoint& at = QPoint())
    {
        constexpr UINT trayMessage = WM_APP + 101; // the toolkit's
        HWND tray = ::FindWindowW(nullptr, L"QTrayIconMessageWindow");
        QVERIFY(tray);
        ::PostMessageW(tray, trayMessage,
                       MAKEWPARAM(static_cast<WORD>(at.x()), static_cast<WORD>(at.y())),
                       MAKELPARAM(event, 0));
    }
    void hideInTheTray() const
    {
        ::PostMessageW(programWindow(), WM_CLOSE, 0, 0);
        QTRY_VERIFY_WITH_TIMEOUT(!::IsWindowVisible(programWindow()), kTimeoutMs);
    }
    /// The whole log of the program, of this start and earlier ones.
    static QString log()
    {
        QFile file(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                   QStringLiteral("/MarvikTools/MarvikTools.log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QProcess m_program;
};

void ProgramTest::init()
{
    QVERIFY(!programWindow());
    m_program.start(QStringLiteral(MARVIK_PROGRAM), {});
    QVERIFY(m_program.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(programWindow() && ::IsWindowVisible(programWindow()), kTimeoutMs);
}

void ProgramTest::cleanup()
{
    if (m_program.state() != QProcess::NotRunning) {
        WindowProcess(programWindow()).quit();
        QVERIFY(m_program.waitForFinished(kTimeoutMs));
    }
    QTRY_VERIFY(!programWindow());
}

void ProgramTest::listIsShownAfterTheStart()
{
    const auto listsBuilt = [] { return log().count(QStringLiteral("更新home页的设备列表")); };
    const int before = listsBuilt();
    QTRY_COMPARE_WITH_TIMEOUT(listsBuilt(), before + 1, kTimeoutMs);
    QVERIFY(::IsWindowVisible(programWindow()));
}

void ProgramTest::watcherRunsBesideTheWindow()
{
    QTRY_VERIFY_WITH_TIMEOUT(::FindWindowA("velmarin", "velmarin window"), kTimeoutMs);
    QVERIFY(!::IsWindowVisible(::FindWindowA("velmarin", "velmarin window")));
}

void ProgramTest::closingHidesTheWindowInTheTray()
{
    hideInTheTray();
    QVERIFY(!m_program.waitForFinished(500));
    QVERIFY(programWindow());
}

void ProgramTest::clickInTheTrayRaisesTheWindow()
{
    hideInTheTray();
    sendTrayEvent(WM_MBUTTONUP);
    QTest::qWait(300);
    QVERIFY(!::IsWindowVisible(programWindow()));
    sendTrayEvent(NIN_SELECT);
    QTRY_VERIFY_WITH_TIMEOUT(::IsWindowVisible(programWindow()), kTimeoutMs);
    QTRY_VERIFY(!::IsIconic(programWindow()));
}

void ProgramTest::secondStartEndsAtOnceAndRaisesTheFirst()
{
    hideInTheTray();
    QProcess second;
    second.start(QStringLiteral(MARVIK_PROGRAM), {});
    QVERIFY(second.waitForFinished(kTimeoutMs));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(::IsWindowVisible(programWindow()), kTimeoutMs);
    QTRY_VERIFY(!::IsIconic(programWindow()));
    QCOMPARE(m_program.state(), QProcess::Running);
}

/// As when the Explorer has crashed and started again.
void ProgramTest::iconComesBackWhenTheTaskBarIsNew()
{
    NOTIFYICONDATAW icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = ::FindWindowW(nullptr, L"QTrayIconMessageWindow");
    QVERIFY(icon.hWnd);
    QVERIFY(::Shell_NotifyIconW(NIM_DELETE, &icon));
    QVERIFY(!::Shell_NotifyIconW(NIM_MODIFY, &icon)); // it is gone
    ::SendMessageW(icon.hWnd, ::RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    QTRY_VERIFY_WITH_TIMEOUT(::Shell_NotifyIconW(NIM_MODIFY, &icon), kTimeoutMs);
}

void ProgramTest::quitInTheTraysMenuEndsTheProgram()
{
    HWND window = programWindow(); // the menu has the same title
    const QPoint corner(700, 300);
    sendTrayEvent(WM_CONTEXTMENU, corner);
    const QPoint entry = corner + QPoint(30, 15);
    const auto isMenu = [window](HWND candidate) {
        return candidate != window && ::GetWindowThreadProcessId(candidate, nullptr) ==
                                          ::GetWindowThreadProcessId(window, nullptr);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isMenu(::WindowFromPoint({entry.x(), entry.y()})), kTimeoutMs);
    ::SetCursorPos(entry.x(), entry.y());
    ::mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
    ::mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
    QVERIFY(m_program.waitForFinished(kTimeoutMs));
    QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program.exitCode(), 0);
}

/// The message that the installer sends.
void ProgramTest::endOfTheEventLoopEndsTheProgram()
{
    WindowProcess(programWindow()).quit();
    QVERIFY(m_program.waitForFinished(kTimeoutMs));
    QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program.exitCode(), 0);
}

void ProgramTest::endOfTheSessionIsNotHeldUp_data()
{
    QTest::addColumn<bool>("hidden");
    QTest::newRow("shown") << false;
    QTest::newRow("in the tray") << true;
}

/// As the system does at a logoff, and as the installer of another program does that needs a file.
void ProgramTest::endOfTheSessionIsNotHeldUp()
{
    QFETCH(bool, hidden);
    if (hidden)
        hideInTheTray();
    QCOMPARE(::SendMessageW(programWindow(), WM_QUERYENDSESSION, 0, ENDSESSION_CLOSEAPP),
             LRESULT{TRUE});
    ::SendMessageW(programWindow(), WM_ENDSESSION, TRUE, ENDSESSION_CLOSEAPP);
    QVERIFY(m_program.waitForFinished(kTimeoutMs));
    QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program.exitCode(), 0);
}

void ProgramTest::cancelledEndOfTheSessionChangesNothing()
{
    QCOMPARE(::SendMessageW(programWindow(), WM_QUERYENDSESSION, 0, 0), LRESULT{TRUE});
    ::SendMessageW(programWindow(), WM_ENDSESSION, FALSE, 0);
    QVERIFY(!m_program.waitForFinished(500));
    QVERIFY(::IsWindowVisible(programWindow()));
}

void ProgramTest::installersNoticeTheProgram()
{
    const auto exists = [](const wchar_t* name) {
        HANDLE mutex = ::OpenMutexW(SYNCHRONIZE, FALSE, name);
        return mutex && ::CloseHandle(mutex);
    };
    QVERIFY(exists(ProgramMutexNames::kSession));
    QVERIFY(exists(ProgramMutexNames::kComputer));
    WindowProcess(programWindow()).quit();
    QVERIFY(m_program.waitForFinished(kTimeoutMs));
    QVERIFY(!exists(ProgramMutexNames::kSession));
    QVERIFY(!exists(ProgramMutexNames::kComputer));
}

QTEST_MAIN(ProgramTest)
#include "ProgramTest.moc"
