#include "LogCapture.h"
#include "PendingTimers.h"
#include "ShownHome.h"

#include <memory>
#include <QAbstractButton>
#include <QElapsedTimer>
#include <QLabel>
#include <QMetaType>
#include <QPushButton>
#include <QStackedWidget>
#include <QtTest>

using Pages = SvtaPagesView;

/// The pages of the main window, and the back button of each.
class SorvantaHomeNavigationTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void indexOfEveryPageIsItsValue();
    void listReplacesTheStartAnimationAfterItsTime();
    void startAnimationHasNeitherMenuNorBackBar();
    void endOfTheStartChangesTheTitleBar();
    void listHasNoBackBar();
    void aboutPageIsTitled();
    void informationPageShowsNoTitle();
    void settingsPageIsTitledWithTheNameOfItsCamera();
    void settingsPageOpensOnItsFirstTab();
    void everyPageIsLoggedByName();
    void pageThatDoesNotExistLeavesTheCurrentOne();
    void pageThatDoesNotExistIsInTheHistory();

    void previewStartsAMomentAfterTheSettingsPage();
    void previewDoesNotStartAfterTheUserHasLeftThePage();
    void everyPageChangeStopsThePreview_data();
    void everyPageChangeStopsThePreview();

    void backFromAboutReturnsToThePageBefore_data();
    void backFromAboutReturnsToThePageBefore();
    void backFromInformationReturnsToTheSettings();
    void backFromInformationOfAnUnpluggedCameraSkipsItsSettings();
    void backFromInformationOpenedInTheListReturnsThere();
    void backFromSettingsReturnsToTheList();
    void backWalksTheWholeHistory();
    void secondBackWithinASecondDoesNothing();
    void backButtonIsLockedForASecond();

    void typesOfQueuedSignalsAreRegistered();

private:
    [[nodiscard]] QString title() const { return m_home->find<QLabel>("labCurrentPage")->text(); }
    [[nodiscard]] bool isVisible(const char* name) const { return m_home->find(name)->isVisible(); }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeNavigationTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>();
    QVERIFY(m_home->isPlaced());
}

void SorvantaHomeNavigationTest::cleanup()
{
    QCOMPARE(m_home->cameras().hidapi().misuse(), QStringList());
    m_home.reset();
    m_log.reset();
}

void SorvantaHomeNavigationTest::indexOfEveryPageIsItsValue()
{
    const auto* stack = m_home->find<QStackedWidget>("homeStackedWidget");
    const char* const classes[] = {"SvtaStartPage", "DeviceHomePage", "DeviceInfoPage", "AboutPage",
                                   "ParamSettingsPage"};
    QCOMPARE(stack->count(), 5);
    for (int i = 0; i < stack->count(); ++i)
        QCOMPARE(stack->widget(i)->metaObject()->className(), classes[i]);
    QCOMPARE(int(Pages::StartPage), 0);
    QCOMPARE(int(Pages::HomePage), 1);
    QCOMPARE(int(Pages::InfoPage), 2);
    QCOMPARE(int(Pages::AboutUsPage), 3);
    QCOMPARE(int(Pages::SettingPage), 4);
}

void SorvantaHomeNavigationTest::listReplacesTheStartAnimationAfterItsTime()
{
    QElapsedTimer clock;
    ShownHome* first = m_home.release(); // created before the clock starts: its own time varies
    delete first;
    clock.start();
    m_home = std::make_unique<ShownHome>();
    QCOMPARE(m_home->page(), int(Pages::StartPage));
    while (m_home->page() == Pages::StartPage && clock.elapsed() < 8000)
        QTest::qWait(10);
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QVERIFY2(clock.elapsed() >= 2800, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(m_log->contains(QStringLiteral("更新home页的设备列表")));
}

void SorvantaHomeNavigationTest::startAnimationHasNeitherMenuNorBackBar()
{
    QCOMPARE(PendingTimers::count(2800), 1);
    QVERIFY(!isVisible("moreBtn"));
    QVERIFY(!isVisible("backWidget"));
    QVERIFY(isVisible("minimumBtn"));
    QVERIFY(isVisible("closeBtn"));
    QVERIFY(m_home->find("minimumBtn")
                ->styleSheet()
                .contains(QLatin1String("image: url(:/images/startminimum.svg)")));
}

void SorvantaHomeNavigationTest::endOfTheStartChangesTheTitleBar()
{
    QVERIFY(m_home->passStart());
    QVERIFY(isVisible("moreBtn"));
    QCOMPARE(m_home->find("closeBtn")->styleSheet(),
             QStringLiteral("image: url(:/images/close.svg);"));
    QCOMPARE(m_home->find("minimumBtn")->styleSheet(),
             QStringLiteral("image: url(:/images/minimum.svg);"));
    QCOMPARE(m_home->window().styleSheet(),
             QStringLiteral("background-color: rgba(255, 255, 255, 0);"));
}

void SorvantaHomeNavigationTest::listHasNoBackBar()
{
    m_home->window().showView(Pages::AboutUsPage);
    QVERIFY(isVisible("backWidget"));
    m_home->window().showView(Pages::HomePage);
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QVERIFY(!isVisible("backWidget"));
}

void SorvantaHomeNavigationTest::aboutPageIsTitled()
{
    m_home->window().showView(Pages::AboutUsPage);
    QCOMPARE(m_home->page(), int(Pages::AboutUsPage));
    QVERIFY(isVisible("backWidget"));
    QVERIFY(isVisible("labCurrentPage"));
    QCOMPARE(title(), QStringLiteral("About"));
    QVERIFY(!isVisible("deviceInfoBtn"));
}

void SorvantaHomeNavigationTest::informationPageShowsNoTitle()
{
    m_home->window().showView(Pages::InfoPage);
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    QVERIFY(isVisible("backWidget"));
    QVERIFY(!isVisible("labCurrentPage"));
    QCOMPARE(title(), QStringLiteral("设备信息"));
    QVERIFY(!isVisible("deviceInfoBtn"));
}

void SorvantaHomeNavigationTest::settingsPageIsTitledWithTheNameOfItsCamera()
{
    DeviceWidgetInfo camera = ShownHome::connectedCamera();
    camera.name = QStringLiteral("<b>Board</b> & room");
    QVERIFY(m_home->openSettings(camera));
    QVERIFY(isVisible("backWidget"));
    QVERIFY(isVisible("labCurrentPage"));
    QVERIFY(isVisible("deviceInfoBtn"));
    QCOMPARE(title(), camera.name);
    QCOMPARE(m_home->find<QLabel>("labCurrentPage")->textFormat(), Qt::PlainText);
}

void SorvantaHomeNavigationTest::settingsPageOpensOnItsFirstTab()
{
    QVERIFY(m_home->openSettings());
    QTest::mouseClick(m_home->find<QAbstractButton>("btnCameraSetting"), Qt::LeftButton);
    QVERIFY(!isVisible("featureSettingPage"));
    m_home->window().showView(Pages::SettingPage);
    QVERIFY(isVisible("featureSettingPage"));
}

void SorvantaHomeNavigationTest::everyPageIsLoggedByName()
{
    const std::pair<Pages::ViewPageEnum, const char*> pages[] = {
        {Pages::InfoPage, "InfoPage"},
        {Pages::AboutUsPage, "AboutPage"},
        {Pages::SettingPage, "SettingPage"}};
    for (const auto& [page, name] : pages) {
        m_log->clear();
        m_home->window().showView(page);
        QVERIFY(m_log->contains(QStringLiteral("mPageMap.contains(page)")));
        QVERIFY2(m_log->contains(QLatin1String(name)), name);
    }
}

void SorvantaHomeNavigationTest::pageThatDoesNotExistLeavesTheCurrentOne()
{
    m_home->window().showView(Pages::AboutUsPage);
    m_log->clear();
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(7));
    QCOMPARE(m_home->page(), int(Pages::AboutUsPage));
    QCOMPARE(title(), QStringLiteral("About"));
    QVERIFY(!m_log->contains(QStringLiteral("mPageMap.contains(page)")));
}

void SorvantaHomeNavigationTest::pageThatDoesNotExistIsInTheHistory()
{
    m_home->window().showView(Pages::HomePage);
    m_home->window().showView(Pages::AboutUsPage);
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(7));
    m_home->window().backView();
    QCOMPARE(m_home->page(), int(Pages::AboutUsPage));
    m_home->window().backView();
    QCOMPARE(m_home->page(), int(Pages::HomePage));
}

void SorvantaHomeNavigationTest::previewStartsAMomentAfterTheSettingsPage()
{
    CaptureScript& preview = m_home->cameras().video().preview();
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    QCOMPARE(PendingTimers::count(100), 1);
    QVERIFY(!preview.takeSteps().contains(QStringLiteral("run")));
    QTRY_VERIFY(preview.steps.contains(QStringLiteral("run")));
    QVERIFY(preview.steps.contains(
        QStringLiteral("bindCaptureSource(%1)").arg(ScriptedCameras::videoPath(0))));
}

void SorvantaHomeNavigationTest::previewDoesNotStartAfterTheUserHasLeftThePage()
{
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    m_home->window().showView(Pages::AboutUsPage);
    CaptureScript& preview = m_home->cameras().video().preview();
    preview.steps.clear();
    QVERIFY(PendingTimers::fire(100));
    QCOMPARE(preview.steps, QStringList());
}

void SorvantaHomeNavigationTest::everyPageChangeStopsThePreview_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("list") << int(Pages::HomePage);
    QTest::newRow("information") << int(Pages::InfoPage);
    QTest::newRow("about") << int(Pages::AboutUsPage);
    QTest::newRow("page that does not exist") << 7;
}

void SorvantaHomeNavigationTest::everyPageChangeStopsThePreview()
{
    QFETCH(const int, page);
    QVERIFY(m_home->openSettings());
    CaptureScript& preview = m_home->cameras().video().preview();
    QVERIFY(preview.takeSteps().contains(QStringLiteral("run")));
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(page));
    QVERIFY(preview.steps.contains(QStringLiteral("stop")));
    QVERIFY(preview.steps.contains(QStringLiteral("release")));
    QVERIFY(!preview.steps.contains(QStringLiteral("run")));
}

void SorvantaHomeNavigationTest::backFromAboutReturnsToThePageBefore_data()
{
    QTest::addColumn<int>("before");
    QTest::newRow("list") << int(Pages::HomePage);
    QTest::newRow("settings") << int(Pages::SettingPage);
    QTest::newRow("information") << int(Pages::InfoPage);
}

void SorvantaHomeNavigationTest::backFromAboutReturnsToThePageBefore()
{
    QFETCH(const int, before);
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(before));
    m_home->window().showView(Pages::AboutUsPage);
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), before);
}

void SorvantaHomeNavigationTest::backFromInformationReturnsToTheSettings()
{
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
    m_home->click("deviceInfoBtn");
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QVERIFY(PendingTimers::fire(ShownHome::kPreviewDelayMs));
    QVERIFY(m_home->passBackLock());
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::HomePage));
}

void SorvantaHomeNavigationTest::backFromInformationOfAnUnpluggedCameraSkipsItsSettings()
{
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
    m_home->click("deviceInfoBtn");
    m_home->window().slotSetDeviceWidget({}); // the list was rebuilt without the camera
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::HomePage));
}

void SorvantaHomeNavigationTest::backFromInformationOpenedInTheListReturnsThere()
{
    m_home->window().showView(Pages::HomePage);
    m_home->window().slotShowDeviceInfoPage();
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::HomePage));
}

void SorvantaHomeNavigationTest::backFromSettingsReturnsToTheList()
{
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
    m_log->clear();
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QVERIFY(m_log->contains(QStringLiteral("flag true")));
}

void SorvantaHomeNavigationTest::backWalksTheWholeHistory()
{
    const QList<int> way{Pages::HomePage,    Pages::AboutUsPage, Pages::InfoPage,
                         Pages::AboutUsPage, Pages::SettingPage, Pages::AboutUsPage};
    for (const int page : way)
        m_home->window().showView(static_cast<Pages::ViewPageEnum>(page));
    m_home->window().slotSetDeviceWidget({});
    for (int i = way.size() - 2; i >= 0; --i) {
        m_home->window().backView();
        QCOMPARE(m_home->page(), way.at(i));
    }
}

void SorvantaHomeNavigationTest::secondBackWithinASecondDoesNothing()
{
    m_home->window().showView(Pages::HomePage);
    m_home->window().showView(Pages::InfoPage);
    m_home->window().showView(Pages::AboutUsPage);
    m_home->click("backBtn");
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    QVERIFY(m_home->passBackLock());
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::HomePage));
}

void SorvantaHomeNavigationTest::backButtonIsLockedForASecond()
{
    m_home->window().showView(Pages::HomePage);
    m_home->window().showView(Pages::AboutUsPage);
    const auto* back = m_home->find<QPushButton>("backBtn");
    QElapsedTimer clock;
    clock.start();
    m_home->click("backBtn");
    QVERIFY(!back->isEnabled());
    QTRY_VERIFY(back->isEnabled());
    QVERIFY2(clock.elapsed() >= 995, qPrintable(QString::number(clock.elapsed())));
}

void SorvantaHomeNavigationTest::typesOfQueuedSignalsAreRegistered()
{
    QVERIFY(QMetaType::type("QList<UVCDeviceInfo>") != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("QMap<QString,HidDevices>") != QMetaType::UnknownType);
}

QTEST_MAIN(SorvantaHomeNavigationTest)
#include "SorvantaHomeNavigationTest.moc"
