#include "ShownHome.h"

#include <memory>
#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QMovie>
#include <QTimer>
#include <QtTest>

namespace {

constexpr int kSettleMs = 1500;
constexpr int kRestMs = 2500;
/// An event of the window system that was under way; a timer of any use would come more often.
constexpr int kLateEvents = 1;

} // namespace

/// A program in the tray of a meeting room's computer runs for months: while nothing happens, it
/// must not wake the processor.
class RestTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingWakesThePage_data();
    void nothingWakesThePage();
    void nothingWakesTheHiddenWindow();

private:
    static bool passStart(const ShownHome& shown);
    static int wakeUps();
};

/// Waits for the end of the start animation too, which the test leaves early.
bool RestTest::passStart(const ShownHome& shown)
{
    const auto* movie = shown.find<QMovie>();
    return shown.isPlaced() && shown.passStart() &&
           QTest::qWaitFor([movie] { return movie->state() == QMovie::NotRunning; });
}

/// How often the event loop of the window wakes up in a time in which nothing happens, without the
/// end of this measurement.
int RestTest::wakeUps()
{
    QTest::qWait(kSettleMs);
    int count = 0;
    QEventLoop loop;
    QTimer::singleShot(kRestMs, &loop, &QEventLoop::quit);
    const QObject context;
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context,
            [&count] { ++count; });
    loop.exec();
    return count - 1;
}

void RestTest::nothingWakesThePage_data()
{
    QTest::addColumn<SvtaPagesView::ViewPageEnum>("page");
    QTest::newRow("list") << SvtaPagesView::HomePage;
    QTest::newRow("information") << SvtaPagesView::InfoPage;
    QTest::newRow("about") << SvtaPagesView::AboutUsPage;
    QTest::newRow("settings") << SvtaPagesView::SettingPage;
}

void RestTest::nothingWakesThePage()
{
    QFETCH(const SvtaPagesView::ViewPageEnum, page);
    ShownHome shown(1);
    QVERIFY(passStart(shown));
    shown.cameras().answerAll();
    if (page == SvtaPagesView::SettingPage) {
        QVERIFY(shown.openSettings());
        shown.window().slotHandleCapture();
    } else if (page != SvtaPagesView::HomePage) {
        shown.window().showView(page);
    }
    QCOMPARE(shown.page(), int(page));
    QVERIFY(wakeUps() <= kLateEvents);
}

void RestTest::nothingWakesTheHiddenWindow()
{
    ShownHome shown(1);
    QVERIFY(passStart(shown));
    shown.closeToTray();
    QVERIFY(!shown.window().isVisible());
    QVERIFY(wakeUps() <= kLateEvents);
}

QTEST_MAIN(RestTest)
#include "RestTest.moc"
