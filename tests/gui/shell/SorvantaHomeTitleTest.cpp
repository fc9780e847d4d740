#include "LogCapture.h"
#include "PendingTimers.h"
#include "Pointer.h"
#include "ShownHome.h"

#include <memory>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QtTest>

namespace {

/// Counts the key presses that reach an object.
class KeyCounter : public QObject
{
public:
    explicit KeyCounter(QObject* watched) { watched->installEventFilter(this); }
    [[nodiscard]] int count() const { return m_count; }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::KeyPress ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

} // namespace

/// The frame of the main window: size, title bar, dragging and keys.
class SorvantaHomeTitleTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowIsFramelessAndOfFixedSize();
    void windowTakesTheFocusByClick();
    void buttonsOfTheBarsNeverTakeTheFocus_data();
    void buttonsOfTheBarsNeverTakeTheFocus();
    void titleOfAPageHasItsFont();

    void draggingTheTitleMovesTheWindow();
    void draggingAPageDoesNotMoveTheWindow();
    void draggingTheTitleWithTheRightButtonDoesNot();
    void draggingTheTitleWithTwoButtonsDoesNot();
    void movingOverTheTitleWithoutAButtonDoesNot();

    void keysOfTheFrameGoNowhere_data();
    void keysOfTheFrameGoNowhere();
    void tabInTheFrameIsLogged();
    void otherKeysInTheFrameAreNotLogged();
    void keysOfAControlOnAPageReachIt();

    void minimizeButtonMinimizes();
    void doubleClickNotesA4kStream_data();
    void doubleClickNotesA4kStream();

private:
    [[nodiscard]] QPoint onTitle() const
    {
        return m_home->window().mapToGlobal(QPoint(180, 18)); // between the buttons
    }
    void drag(const QPoint& from, const QPoint& by) const;

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeTitleTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
}

void SorvantaHomeTitleTest::cleanup()
{
    m_home.reset();
    m_log.reset();
}

void SorvantaHomeTitleTest::drag(const QPoint& from, const QPoint& by) const
{
    Pointer::moveTo(from);
    Pointer::press();
    for (int step = 1; step <= 4; ++step) {
        Pointer::moveTo(from + by * step / 4);
        QTest::qWait(20);
    }
    Pointer::release();
    QTest::qWait(50);
}

void SorvantaHomeTitleTest::windowIsFramelessAndOfFixedSize()
{
    const SorvantaHome& window = m_home->window();
    QCOMPARE(window.size(), QSize(360, 680));
    const Qt::WindowFlags expected =
        Qt::FramelessWindowHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint;
    QCOMPARE(window.windowFlags() & ~Qt::WindowType_Mask, expected);
    QCOMPARE(window.geometry(), window.frameGeometry());
    m_home->window().resize(500, 700);
    QTest::qWait(50);
    QCOMPARE(window.size(), QSize(360, 680));
}

void SorvantaHomeTitleTest::windowTakesTheFocusByClick()
{
    QCOMPARE(m_home->window().focusPolicy(), Qt::ClickFocus);
    QCOMPARE(m_home->find("homeStackedWidget")->focusPolicy(), Qt::ClickFocus);
}

void SorvantaHomeTitleTest::buttonsOfTheBarsNeverTakeTheFocus_data()
{
    QTest::addColumn<QString>("image");
    QTest::newRow("moreBtn") << QStringLiteral("more.svg");
    QTest::newRow("minimumBtn") << QStringLiteral("startminimum.svg");
    QTest::newRow("closeBtn") << QStringLiteral("close.svg");
    QTest::newRow("backBtn") << QStringLiteral("back.svg");
    QTest::newRow("deviceInfoBtn") << QStringLiteral("deviceInfo.svg");
}

void SorvantaHomeTitleTest::buttonsOfTheBarsNeverTakeTheFocus()
{
    QFETCH(const QString, image);
    const auto* button = m_home->find<QPushButton>(QTest::currentDataTag());
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    QVERIFY(button->isFlat());
    QVERIFY(button->styleSheet().contains(image));
}

void SorvantaHomeTitleTest::titleOfAPageHasItsFont()
{
    const auto* label = m_home->find<QLabel>("labCurrentPage");
    QCOMPARE(label->alignment(), Qt::AlignCenter);
    for (const char* part : {"14px", "\"Microsoft YaHei UI\"", "400", "#141414"})
        QVERIFY2(label->styleSheet().contains(QLatin1String(part)), part);
}

void SorvantaHomeTitleTest::draggingTheTitleMovesTheWindow()
{
    const QPoint before = m_home->window().pos();
    drag(onTitle(), QPoint(120, 60));
    QTRY_COMPARE(m_home->window().pos(), before + QPoint(120, 60));
    drag(onTitle(), QPoint(-200, 20));
    QTRY_COMPARE(m_home->window().pos(), before + QPoint(-80, 80));
}

void SorvantaHomeTitleTest::draggingAPageDoesNotMoveTheWindow()
{
    m_home->window().showView(SvtaPagesView::AboutUsPage);
    const QPoint before = m_home->window().pos();
    drag(m_home->window().mapToGlobal(QPoint(180, 640)), QPoint(90, -60));
    QCOMPARE(m_home->window().pos(), before);
}

void SorvantaHomeTitleTest::draggingTheTitleWithTheRightButtonDoesNot()
{
    const QPoint before = m_home->window().pos();
    Pointer::moveTo(onTitle());
    Pointer::press(3);
    Pointer::moveTo(onTitle() + QPoint(70, 5));
    QTest::qWait(50);
    Pointer::release(3);
    QTest::qWait(50);
    QCOMPARE(m_home->window().pos(), before);
}

void SorvantaHomeTitleTest::draggingTheTitleWithTwoButtonsDoesNot()
{
    const QPoint before = m_home->window().pos();
    Pointer::moveTo(onTitle());
    Pointer::press(1);
    Pointer::press(3);
    Pointer::moveTo(onTitle() + QPoint(70, 5));
    QTest::qWait(50);
    Pointer::release(3);
    Pointer::release(1);
    QTest::qWait(50);
    QCOMPARE(m_home->window().pos(), before);
}

void SorvantaHomeTitleTest::movingOverTheTitleWithoutAButtonDoesNot()
{
    const QPoint before = m_home->window().pos();
    Pointer::moveTo(onTitle());
    Pointer::moveTo(onTitle() + QPoint(70, 5));
    QTest::qWait(50);
    QCOMPARE(m_home->window().pos(), before);
}

void SorvantaHomeTitleTest::keysOfTheFrameGoNowhere_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Tab") << int(Qt::Key_Tab);
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("letter") << int(Qt::Key_A);
}

void SorvantaHomeTitleTest::keysOfTheFrameGoNowhere()
{
    QFETCH(const int, key);
    for (const char* name : {"titleWidget", "homeStackedWidget"}) {
        QWidget* widget = m_home->find(name);
        const KeyCounter parent(widget->parentWidget());
        QTest::keyClick(widget, static_cast<Qt::Key>(key));
        QCOMPARE(parent.count(), 0);
    }
    QVERIFY(m_home->window().isVisible());
}

void SorvantaHomeTitleTest::tabInTheFrameIsLogged()
{
    for (const char* name : {"titleWidget", "homeStackedWidget"}) {
        m_log->clear();
        QTest::keyClick(m_home->find(name), Qt::Key_Tab);
        QCOMPARE(m_log->texts().filter(QStringLiteral("Keyboard")),
                 QStringList{QStringLiteral("Tab in edit Keyboard")});
    }
}

void SorvantaHomeTitleTest::otherKeysInTheFrameAreNotLogged()
{
    m_log->clear();
    QTest::keyClick(m_home->find("titleWidget"), Qt::Key_A);
    QTest::keyClick(m_home->find("homeStackedWidget"), Qt::Key_Backtab);
    QVERIFY(!m_log->contains(QStringLiteral("Tab in edit Keyboard")));
}

void SorvantaHomeTitleTest::keysOfAControlOnAPageReachIt()
{
    m_home->cameras().answerAll();
    QVERIFY(m_home->openSettings());
    QTest::mouseClick(m_home->find<QPushButton>("btnCameraSetting"), Qt::LeftButton);
    auto* slider = m_home->find<QSlider>("brightSlider");
    slider->setValue(100);
    QTest::keyClick(slider, Qt::Key_Right);
    QVERIFY(slider->value() > 100);
}

void SorvantaHomeTitleTest::minimizeButtonMinimizes()
{
    m_home->click("minimumBtn");
    QTRY_VERIFY(m_home->window().isMinimized());
    QVERIFY(!m_home->window().isHidden());
    m_home->window().showNormal();
    QTRY_VERIFY(!m_home->window().isMinimized());
}

void SorvantaHomeTitleTest::doubleClickNotesA4kStream_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("streaming");
    QTest::addColumn<bool>("noted");
    QTest::newRow("4K") << 3840 << 2160 << 1 << true;
    QTest::newRow("4K that does not stream") << 3840 << 2160 << 0 << false;
    QTest::newRow("1080p") << 1920 << 1080 << 1 << false;
}

void SorvantaHomeTitleTest::doubleClickNotesA4kStream()
{
    QFETCH(const int, width);
    QFETCH(const int, height);
    QFETCH(const int, streaming);
    m_home->cameras().answerAll();
    m_home->cameras().setStream(width, height, streaming);
    QVERIFY(m_home->openSettings());
    m_log->clear();
    QTest::mouseDClick(m_home->find("titleWidget"), Qt::LeftButton, Qt::NoModifier, {180, 18});
    QTEST(m_log->contains(QStringLiteral("4k")), "noted");
}

QTEST_MAIN(SorvantaHomeTitleTest)
#include "SorvantaHomeTitleTest.moc"
