#include "CacheHome.h"
#include "HidCommands.h"
#include "HidFrame.h"
#include "ShownHome.h"

#include <memory>
#include <QDir>
#include <QSettings>
#include <qt_windows.h>
#include <QThreadPool>
#include <QtTest>

namespace {

constexpr int kTimeoutMs = 20000;
constexpr int kPackets = 150;

/// What the system shows while it waits for the program; empty when the program gives no reason.
QString s_reason;

/// The system's functions return nothing that a test could read under Wine.
BOOL WINAPI createReason(HWND window, LPCWSTR reason)
{
    s_reason = ::IsWindow(window) ? QString::fromWCharArray(reason) : QString();
    return TRUE;
}

BOOL WINAPI destroyReason(HWND window)
{
    if (::IsWindow(window))
        s_reason.clear();
    return TRUE;
}

} // namespace

/// The pointers through which the product's code calls the system's functions: with them defined
/// here, the linker does not take those of the import library.
extern "C" decltype(&createReason) __imp_ShutdownBlockReasonCreate;
decltype(&createReason) __imp_ShutdownBlockReasonCreate = &createReason;
extern "C" decltype(&destroyReason) __imp_ShutdownBlockReasonDestroy;
decltype(&destroyReason) __imp_ShutdownBlockReasonDestroy = &destroyReason;

/// What the window answers when the system asks whether the session may end.
class SessionEndTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void sessionMayEndWithoutATransfer_data();
    void sessionMayEndWithoutATransfer();
    void sessionIsHeldUpDuringATransfer_data();
    void sessionIsHeldUpDuringATransfer();
    void endOfTheProgramHoldsTheSessionUpToo();

private:
    /// The answer to the system's question.
    bool mayEnd(LPARAM why) const
    {
        return ::SendMessageW(handle(), WM_QUERYENDSESSION, 0, why) != FALSE;
    }
    HWND handle() const { return reinterpret_cast<HWND>(m_home->window().winId()); }
    void startTransfer() const;
    [[nodiscard]] bool isWriting() const { return count(HidCommands::FirmwareEnd) == 0; }
    [[nodiscard]] int count(std::uint16_t command) const
    {
        int found = 0;
        for (const QByteArray& frame : m_home->cameras().hidapi().writtenFrames())
            found += frame.at(3) == char(command & 0xFF) && frame.at(4) == char(command >> 8);
        return found;
    }

    std::unique_ptr<CacheHome> m_cache;
    QTemporaryDir m_folder;
    std::unique_ptr<ShownHome> m_home;
};

void SessionEndTest::init()
{
    s_reason.clear();
    m_cache = std::make_unique<CacheHome>();
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    for (const std::uint16_t command :
         {HidCommands::FirmwareStart, HidCommands::FirmwarePacket, HidCommands::FirmwareEnd})
        m_home->cameras().hidapi().respondTo(command, {});
    QVERIFY(m_home->passStart());
}

void SessionEndTest::cleanup()
{
    m_home.reset();
    m_cache.reset();
}

/// Writes an image of the test into the open camera.
void SessionEndTest::startTransfer() const
{
    const QString path = m_folder.filePath(QStringLiteral("own.bin"));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(kPackets * int(HidFrame::kMaxPayload), 'f'));
        QSettings settings(QSettings::IniFormat, QSettings::UserScope,
                           QStringLiteral("MarvikTools"), QStringLiteral("MarvikTools"));
        settings.setValue(QStringLiteral("development/firmwareFile"), path);
    }
    QVERIFY(m_home->openSettings());
    m_home->window().slotCameraUpgrade();
    QTRY_VERIFY_WITH_TIMEOUT(count(HidCommands::FirmwarePacket) > 0, kTimeoutMs);
}

void SessionEndTest::sessionMayEndWithoutATransfer_data()
{
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<quint32>("why");
    for (const bool hidden : {false, true}) {
        const char* place = hidden ? "in the tray" : "shown";
        QTest::addRow("shutdown, %s", place) << hidden << quint32{0};
        QTest::addRow("logoff, %s", place) << hidden << quint32{ENDSESSION_LOGOFF};
        QTest::addRow("update of the program, %s", place) << hidden << quint32{ENDSESSION_CLOSEAPP};
    }
}

void SessionEndTest::sessionMayEndWithoutATransfer()
{
    QFETCH(bool, hidden);
    QFETCH(quint32, why);
    if (hidden)
        m_home->closeToTray();
    QVERIFY(mayEnd(LPARAM(why)));
    QCOMPARE(m_home->window().isHidden(), hidden);
    QCOMPARE(s_reason, QString());
}

void SessionEndTest::sessionIsHeldUpDuringATransfer_data()
{
    QTest::addColumn<bool>("hidden");
    QTest::newRow("shown") << false;
    QTest::newRow("in the tray") << true;
}

void SessionEndTest::sessionIsHeldUpDuringATransfer()
{
    QFETCH(bool, hidden);
    startTransfer();
    if (hidden)
        m_home->closeToTray();
    for (const LPARAM why : {LPARAM{0}, LPARAM(ENDSESSION_LOGOFF)})
        QVERIFY(!mayEnd(why));
    QCOMPARE(s_reason, QStringLiteral("A camera is being updated"));
    // The user has cancelled it.
    ::SendMessageW(handle(), WM_ENDSESSION, FALSE, 0);
    QVERIFY(isWriting()); // everything so far was during the transfer
    QTRY_VERIFY_WITH_TIMEOUT(!isWriting(), kTimeoutMs);
    QThreadPool::globalInstance()->waitForDone();
    QTRY_COMPARE(s_reason, QString());
    QVERIFY(mayEnd(0));
    QCOMPARE(m_home->window().isHidden(), hidden);
    QCOMPARE(count(HidCommands::FirmwarePacket), kPackets);
}

/// After "Quit" no window is visible, and the camera is still being written.
void SessionEndTest::endOfTheProgramHoldsTheSessionUpToo()
{
    startTransfer();
    bool held = false;
    QTimer::singleShot(0, this, [&] { held = isWriting() && !mayEnd(0); });
    m_home->window().finishTransfer();
    QVERIFY(held);
    QVERIFY(mayEnd(0));
    QCOMPARE(s_reason, QString());
}

QTEST_MAIN(SessionEndTest)
#include "SessionEndTest.moc"
