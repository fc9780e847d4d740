#include "Pointer.h"
#include "ShownHome.h"
#include "SvtaMoreWidget.h"

#include <memory>
#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QPalette>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <QtTest>

/// The "more" menu of the title bar.
class SorvantaHomeMenuTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void menuIsAPopupOfFixedSize();
    void entriesHaveTheirTexts();
    void opensUnderTheWindowsCorner();
    void opensAtTheWindowsNewPlace();
    void clickOutsideClosesIt();
    void aboutOpensTheAboutPage();
    void aboutOnTheAboutPageDoesNotOpenItAgain();
    void quitClosesTheWindowIntoTheTray();
    void worksWithKeys();
    void escapeClosesIt();
    void trayMenuIsReadableInADarkMode();

private:
    [[nodiscard]] SvtaMoreWidget* menu() const { return m_home->find<SvtaMoreWidget>(); }
    void choose(const char* entry) const
    {
        m_home->click("moreBtn");
        QVERIFY(QTest::qWaitForWindowExposed(menu()));
        QTest::mouseClick(menu()->findChild<QPushButton*>(QLatin1String(entry)), Qt::LeftButton);
    }

    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeMenuTest::init()
{
    m_home = std::make_unique<ShownHome>();
    QVERIFY(m_home->isPlaced());
    QVERIFY(m_home->passStart());
}

void SorvantaHomeMenuTest::cleanup()
{
    m_home.reset();
}

void SorvantaHomeMenuTest::menuIsAPopupOfFixedSize()
{
    QVERIFY(!menu()->isVisible());
    QCOMPARE(menu()->size(), QSize(90, 68));
    QCOMPARE(menu()->minimumSize(), QSize(90, 68));
    QCOMPARE(menu()->maximumSize(), QSize(90, 68));
    QVERIFY(menu()->windowFlags().testFlag(Qt::Popup));
    QVERIFY(menu()->windowFlags().testFlag(Qt::NoDropShadowWindowHint));
    QVERIFY(menu()->styleSheet().contains(QLatin1String("border: 1px solid #F2F2F2")));
}

void SorvantaHomeMenuTest::entriesHaveTheirTexts()
{
    QCOMPARE(menu()->findChildren<QPushButton*>().size(), 2);
    QCOMPARE(m_home->find<QPushButton>("btnAbout")->text(), QStringLiteral("About"));
    QCOMPARE(m_home->find<QPushButton>("btnQuit")->text(), QStringLiteral("Quit"));
    QVERIFY(m_home->find<QPushButton>("btnAbout")->isFlat());
    QVERIFY(m_home->find<QPushButton>("btnQuit")->isFlat());
}

void SorvantaHomeMenuTest::opensUnderTheWindowsCorner()
{
    m_home->click("moreBtn");
    QVERIFY(QTest::qWaitForWindowExposed(menu()));
    QCOMPARE(menu()->pos(), m_home->window().geometry().topLeft() + QPoint(16, 36));
}

void SorvantaHomeMenuTest::opensAtTheWindowsNewPlace()
{
    m_home->window().move(120, 90);
    QTRY_COMPARE(m_home->window().pos(), QPoint(120, 90));
    m_home->click("moreBtn");
    QVERIFY(QTest::qWaitForWindowExposed(menu()));
    QTRY_COMPARE(menu()->pos(), QPoint(136, 126));
}

void SorvantaHomeMenuTest::clickOutsideClosesIt()
{
    m_home->click("moreBtn");
    QVERIFY(QTest::qWaitForWindowExposed(menu()));
    Pointer::clickAt(m_home->window().mapToGlobal(QPoint(250, 500)));
    QTRY_VERIFY(!menu()->isVisible());
    QCOMPARE(m_home->page(), int(SvtaPagesView::HomePage));
}

void SorvantaHomeMenuTest::aboutOpensTheAboutPage()
{
    choose("btnAbout");
    QCOMPARE(m_home->page(), int(SvtaPagesView::AboutUsPage));
    QVERIFY(!menu()->isVisible());
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(SvtaPagesView::HomePage));
}

void SorvantaHomeMenuTest::aboutOnTheAboutPageDoesNotOpenItAgain()
{
    choose("btnAbout");
    choose("btnAbout");
    QCOMPARE(m_home->page(), int(SvtaPagesView::AboutUsPage));
    QVERIFY(!menu()->isVisible());
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(SvtaPagesView::HomePage));
}

void SorvantaHomeMenuTest::worksWithKeys()
{
    QTest::keyClick(&m_home->window(), Qt::Key_F10);
    QVERIFY(QTest::qWaitForWindowExposed(menu()));
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    press(Qt::Key_Down);
    QVERIFY(m_home->find("btnAbout")->hasFocus());
    press(Qt::Key_Down);
    QVERIFY(m_home->find("btnQuit")->hasFocus());
    press(Qt::Key_Up);
    QVERIFY(m_home->find("btnAbout")->hasFocus());
    press(Qt::Key_Return);
    QCOMPARE(m_home->page(), int(SvtaPagesView::AboutUsPage));
    QVERIFY(!menu()->isVisible());
}

void SorvantaHomeMenuTest::escapeClosesIt()
{
    QTest::keyClick(&m_home->window(), Qt::Key_F10);
    QVERIFY(QTest::qWaitForWindowExposed(menu()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_VERIFY(!menu()->isVisible());
    QCOMPARE(m_home->page(), int(SvtaPagesView::HomePage));
    // The next time no entry is marked.
    QTest::keyClick(&m_home->window(), Qt::Key_F10);
    QVERIFY(QTest::qWaitForWindowExposed(menu()));
    QVERIFY(!m_home->find("btnAbout")->hasFocus());
}

void SorvantaHomeMenuTest::quitClosesTheWindowIntoTheTray()
{
    choose("btnQuit");
    QVERIFY(m_home->window().isHidden());
    QVERIFY(!menu()->isVisible());
    ShownHome::waitForLossOfFocus();
    m_home->window().slotActivateWindow();
    QTRY_VERIFY(m_home->window().isActiveWindow());
    QVERIFY(!menu()->isVisible());
    QCOMPARE(m_home->page(), int(SvtaPagesView::HomePage));
}

/// Its background is white in every mode, and so must its text not be.
void SorvantaHomeMenuTest::trayMenuIsReadableInADarkMode()
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::white, Qt::black, Qt::white, Qt::black, Qt::darkGray,
                                      Qt::white, Qt::white, Qt::black, Qt::black));
    auto* tray = m_home->window().findChild<QSystemTrayIcon*>();
    tray->contextMenu()->ensurePolished();
    const QImage shown = tray->contextMenu()->grab().toImage();
    int dark = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            dark += qGray(shown.pixel(x, y)) < 100 ? 1 : 0;
    }
    QApplication::setPalette(before);
    QCOMPARE(QColor(shown.pixel(3, 3)), QColor(Qt::white));
    QVERIFY(dark > 0); // how many depends on the font
}

QTEST_MAIN(SorvantaHomeMenuTest)
#include "SorvantaHomeMenuTest.moc"
