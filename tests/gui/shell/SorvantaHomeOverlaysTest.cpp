#include "MaskForm.h"
#include "OnScreen.h"
#include "OverlayImage.h"
#include "PendingTimers.h"
#include "Pointer.h"
#include "ShownHome.h"
#include "SvtaSupportedProductDialog.h"
#include "TransparentBtn.h"
#include "TransparentWidget.h"
#include "TransPrewBtn.h"

#include <memory>
#include <QLabel>
#include <QPushButton>
#include <QtTest>
#include <QWindow>

using Pages = SvtaPagesView;

namespace {

const QString kGridOff = QStringLiteral("image: url(:/images/jiugongge.svg)");
const QString kGridOn = QStringLiteral("image: url(:/images/bandengfeng.svg)");

} // namespace

/// The windows over the main window: the controls of the preview and the mask.
class SorvantaHomeOverlaysTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void areChildrenOfTheWindow();
    void areHiddenUntilThePreviewRuns();
    void closedPreviewHasNoGridButton();
    void keepTheirPlacesInTheWindow();
    void followTheWindow();
    void clickOnTheGridButtonSwitchesTheGrid();
    void buttonsLieOverTheGrid();
    void everyPageChangeHidesThem_data();
    void everyPageChangeHidesThem();
    void gridComesBackWithTheSettings();
    void gridIsForgottenOnTheList();
    void areHiddenWhileTheWindowIsMinimized();
    void followAWindowThatIsMinimizedAndRestoredAtOnce();
    void areNotShownWhenAHiddenWindowChangesItsState();
    void closingTheWindowHidesTheGrid();
    void restoringShowsTheButtonsOnTheSettingsPage();
    void restoringAClosedPreviewShowsItsButtonOnly();
    void restoringAnotherPageShowsNone();
    void supportedProductsAreAtTheBottomOverTheMask();

private:
    [[nodiscard]] QWidget* grid() const { return m_home->find<TransparentWidget>(); }
    [[nodiscard]] TransparentBtn* gridButton() const { return m_home->find<TransparentBtn>(); }
    [[nodiscard]] TransPrewBtn* previewButton() const { return m_home->find<TransPrewBtn>(); }
    void clickGridButton() const
    {
        QTest::mouseClick(gridButton()->findChild<QLabel*>(), Qt::LeftButton);
    }
    /// Which are shown: g grid, b its button, p the preview's button.
    [[nodiscard]] QString shown() const
    {
        return QString(grid()->isVisible() ? QStringLiteral("g") : QString()) +
               (gridButton()->isVisible() ? QStringLiteral("b") : QString()) +
               (previewButton()->isVisible() ? QStringLiteral("p") : QString());
    }

    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeOverlaysTest::init()
{
    m_home = std::make_unique<ShownHome>();
    QVERIFY(m_home->isPlaced());
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
}

void SorvantaHomeOverlaysTest::cleanup()
{
    m_home.reset();
}

void SorvantaHomeOverlaysTest::areChildrenOfTheWindow()
{
    for (const QWidget* overlay :
         std::initializer_list<QWidget*>{grid(), gridButton(), previewButton()}) {
        QVERIFY(overlay->isWindow());
        QCOMPARE(overlay->parentWidget(), &m_home->window());
    }
}

void SorvantaHomeOverlaysTest::areHiddenUntilThePreviewRuns()
{
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    QCOMPARE(shown(), QString());
    QVERIFY(PendingTimers::fire(ShownHome::kPreviewDelayMs));
    QCOMPARE(shown(), QStringLiteral("bp"));
    QVERIFY(previewButton()->isPreviewOpen());
    QCOMPARE(imageStyle(gridButton()), kGridOff);
    QCOMPARE(imageStyle(previewButton()), QStringLiteral("image: url(:/images/previewopen.svg)"));
}

void SorvantaHomeOverlaysTest::closedPreviewHasNoGridButton()
{
    m_home->cameras().video().preview().failing = {QStringLiteral("run")};
    QVERIFY(m_home->openSettings());
    QCOMPARE(shown(), QStringLiteral("p"));
    QVERIFY(!previewButton()->isPreviewOpen());
    QCOMPARE(imageStyle(previewButton()), QStringLiteral("image: url(:/images/previewclose.svg)"));
}

void SorvantaHomeOverlaysTest::keepTheirPlacesInTheWindow()
{
    clickGridButton();
    const QPoint origin = m_home->window().geometry().topLeft();
    QVERIFY(QTest::qWaitForWindowExposed(grid()));
    QTest::qWait(50);
    QCOMPARE(OnScreen::placeOf(*grid()), QRect(origin + QPoint(0, 80), QSize(360, 202)));
    QCOMPARE(OnScreen::placeOf(*gridButton()), QRect(origin + QPoint(284, 248), QSize(24, 24)));
    QCOMPARE(OnScreen::placeOf(*previewButton()), QRect(origin + QPoint(320, 248), QSize(24, 24)));
}

void SorvantaHomeOverlaysTest::followTheWindow()
{
    clickGridButton();
    for (const QPoint& place : {QPoint(97, 121), QPoint(613, 203)}) {
        m_home->window().move(place);
        QTRY_COMPARE(m_home->window().geometry().topLeft(), place);
        QTRY_COMPARE(OnScreen::placeOf(*grid()).topLeft(), place + QPoint(0, 80));
        QTRY_COMPARE(OnScreen::placeOf(*gridButton()).topLeft(), place + QPoint(284, 248));
        QTRY_COMPARE(OnScreen::placeOf(*previewButton()).topLeft(), place + QPoint(320, 248));
    }
}

void SorvantaHomeOverlaysTest::clickOnTheGridButtonSwitchesTheGrid()
{
    Pointer::clickAt(Pointer::middleOf(*gridButton()) - QPoint(8, 8));
    QTRY_COMPARE(shown(), QStringLiteral("gbp"));
    QCOMPARE(imageStyle(gridButton()), kGridOn);
    QVERIFY(QTest::qWaitForWindowExposed(grid()));
    QTest::qWait(100); // until the window manager has raised the button above the grid again
    // At another place on it, otherwise the two clicks would be a double click.
    Pointer::clickAt(Pointer::middleOf(*gridButton()) + QPoint(8, 8));
    QTRY_COMPARE(shown(), QStringLiteral("bp"));
    QCOMPARE(imageStyle(gridButton()), kGridOff);
}

void SorvantaHomeOverlaysTest::buttonsLieOverTheGrid()
{
    clickGridButton();
    QVERIFY(QTest::qWaitForWindowExposed(grid()));
    QTest::qWait(50);
    // The grid does not intercept clicks on the buttons inside it.
    Pointer::clickAt(Pointer::middleOf(*previewButton()));
    QTRY_VERIFY(!previewButton()->isPreviewOpen());
    QCOMPARE(shown(), QStringLiteral("p"));
}

void SorvantaHomeOverlaysTest::everyPageChangeHidesThem_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("list") << int(Pages::HomePage);
    QTest::newRow("information") << int(Pages::InfoPage);
    QTest::newRow("about") << int(Pages::AboutUsPage);
    QTest::newRow("page that does not exist") << 7;
}

void SorvantaHomeOverlaysTest::everyPageChangeHidesThem()
{
    QFETCH(const int, page);
    clickGridButton();
    QCOMPARE(shown(), QStringLiteral("gbp"));
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(page));
    QCOMPARE(shown(), QString());
    QCOMPARE(imageStyle(gridButton()), kGridOff);
}

void SorvantaHomeOverlaysTest::gridComesBackWithTheSettings()
{
    clickGridButton();
    m_home->click("deviceInfoBtn");
    QCOMPARE(shown(), QString());
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QVERIFY(grid()->isVisible());
    QCOMPARE(imageStyle(gridButton()), kGridOn);
}

void SorvantaHomeOverlaysTest::gridIsForgottenOnTheList()
{
    clickGridButton();
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
    QCOMPARE(shown(), QStringLiteral("bp"));
    QCOMPARE(imageStyle(gridButton()), kGridOff);
}

void SorvantaHomeOverlaysTest::areHiddenWhileTheWindowIsMinimized()
{
    clickGridButton();
    m_home->click("minimumBtn");
    QTRY_VERIFY(m_home->window().isMinimized());
    QTRY_COMPARE(shown(), QString());
    // Restored before the window manager has minimized it, the window would still be minimized.
    QTRY_VERIFY(!m_home->window().windowHandle()->isExposed());
    m_home->window().showNormal();
    QTRY_COMPARE(shown(), QStringLiteral("gbp"));
    QCOMPARE(imageStyle(gridButton()), kGridOn);
    QVERIFY(m_home->window().testAttribute(Qt::WA_Mapped));
    QTest::qWait(100);
    const QPoint origin = OnScreen::placeOf(m_home->window()).topLeft();
    QCOMPARE(OnScreen::placeOf(*grid()).topLeft(), origin + QPoint(0, 80));
    QCOMPARE(OnScreen::placeOf(*previewButton()).topLeft(), origin + QPoint(320, 248));
}

void SorvantaHomeOverlaysTest::followAWindowThatIsMinimizedAndRestoredAtOnce()
{
    clickGridButton();
    for (int round = 0; round < 3; ++round) {
        m_home->click("minimumBtn");
        m_home->window().showNormal();
        // The window manager may execute the two requests in any order.
        QTest::qWait(300);
        QCOMPARE(shown(), OnScreen::isShown(m_home->window()) ? QStringLiteral("gbp") : QString());
        m_home->window().showNormal();
        QTRY_VERIFY(OnScreen::isShown(m_home->window()));
        QTRY_COMPARE(shown(), QStringLiteral("gbp"));
    }
}

void SorvantaHomeOverlaysTest::areNotShownWhenAHiddenWindowChangesItsState()
{
    m_home->closeToTray();
    m_home->window().setWindowState(Qt::WindowMinimized);
    m_home->window().setWindowState(Qt::WindowNoState);
    QTest::qWait(50);
    QVERIFY(m_home->window().isHidden());
    QCOMPARE(shown(), QString());
}

void SorvantaHomeOverlaysTest::closingTheWindowHidesTheGrid()
{
    clickGridButton();
    m_home->closeToTray();
    QVERIFY(m_home->window().isHidden());
    QCOMPARE(shown(), QString());
    QCOMPARE(imageStyle(gridButton()), kGridOff);
    m_home->window().slotActivateWindow();
    QTRY_VERIFY(m_home->window().isVisible());
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QTRY_COMPARE(shown(), QStringLiteral("bp"));
    QCOMPARE(imageStyle(gridButton()), kGridOff);
}

void SorvantaHomeOverlaysTest::restoringShowsTheButtonsOnTheSettingsPage()
{
    m_home->closeToTray();
    QCOMPARE(shown(), QString());
    m_home->window().slotActivateWindow();
    QTRY_COMPARE(shown(), QStringLiteral("bp"));
    QTest::qWait(100);
    const QPoint origin = OnScreen::placeOf(m_home->window()).topLeft();
    QCOMPARE(OnScreen::placeOf(*gridButton()).topLeft(), origin + QPoint(284, 248));
    QCOMPARE(OnScreen::placeOf(*previewButton()).topLeft(), origin + QPoint(320, 248));
}

void SorvantaHomeOverlaysTest::restoringAClosedPreviewShowsItsButtonOnly()
{
    QTest::mouseClick(previewButton()->findChild<QLabel*>(), Qt::LeftButton);
    QVERIFY(!previewButton()->isPreviewOpen());
    m_home->closeToTray();
    m_home->window().slotActivateWindow();
    QTRY_COMPARE(shown(), QStringLiteral("p"));
}

void SorvantaHomeOverlaysTest::restoringAnotherPageShowsNone()
{
    m_home->window().showView(Pages::AboutUsPage);
    m_home->closeToTray();
    m_home->window().slotActivateWindow();
    QTRY_VERIFY(m_home->window().isActiveWindow());
    QCOMPARE(shown(), QString());
}

void SorvantaHomeOverlaysTest::supportedProductsAreAtTheBottomOverTheMask()
{
    m_home->window().showView(Pages::HomePage);
    m_home->click("btnSupportedProducts");
    const auto* list = m_home->find<SvtaSupportedProductDialog>();
    const auto* mask = m_home->window().findChild<MaskForm*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(list->isVisible());
    QTest::qWait(50);
    const QRect window = OnScreen::placeOf(m_home->window());
    const QRect place = OnScreen::placeOf(*list);
    QCOMPARE(OnScreen::placeOf(*mask), window);
    QCOMPARE(place.bottom(), window.bottom());
    QCOMPARE(place.x(), window.x() + (window.width() - place.width()) / 2);
    QTest::mouseClick(list->findChild<QPushButton*>(QStringLiteral("btnClose")), Qt::LeftButton);
    QVERIFY(!list->isVisible());
    QVERIFY(!mask->isVisible());
}

QTEST_MAIN(SorvantaHomeOverlaysTest)
#include "SorvantaHomeOverlaysTest.moc"
