#include "CameraDesk.h"
#include "PendingTimers.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaParamNotSaveDialog.h"

#include <memory>
#include <QtTest>

namespace {

constexpr int kFramingDelayMs = 10;
constexpr int kFramingOffDelayMs = 100;

} // namespace

/// The writes to the camera by each control of the settings page, and their order.
class SettingsApplyTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void controlReachesItsRegister_data();
    void controlReachesItsRegister();
    void sliderReachesItsControl_data();
    void sliderReachesItsControl();
    void sliderClickedAtAnEndSetsTheEnd();
    void wheelChangesNeitherSliderNorCamera();
    void clickOnTheHandleChoosesCustomAndWritesNothing();
    void dragReachesTheCameraWhenItEnds();
    void keysReachTheCamera();
    void rightButtonChangesNothing();
    void presetSetsAllFourControls_data();
    void presetSetsAllFourControls();
    void customPresetChangesNothing();
    void sliderMovesChooseTheCustomPreset();

    void switchingOnSetsTheWidestViewBeforeAnythingElse();
    void switchingOnAfterFrameMasterTakesFrameMaster();
    void switchingOnWithIndividualModeKeepsIt();
    void switchingOffReadsAndSwitchesOffWhatIsInUse_data();
    void switchingOffReadsAndSwitchesOffWhatIsInUse();
    void switchingOffKeepsTheWidestView();
    void switchIsLockedForASecond();
    void frameMasterComesAfterAutomaticFramingIsOff();
    void automaticFramingComesAfterFrameMasterIsOff();
    void framingIsWrittenAfterTenMilliseconds();
    void framingChosenAgainIsWrittenAgain();
    void subModeReachesTheCamera();
    void subModeOfTheCameraIsShownWhenAutomaticFramingReturns();
    void viewIsDisabledWhileIntelligentIsOn();
    void fastChangesOfTheFramingDoNotInterfere();
    void optionsAreaHasItsThreeSizes();

    void cameraThatRefusesKeepsTheEdit();
    void cameraThatRefusesPictureControlsKeepsTheEdit();
    void cameraWithoutPictureControlsIsUsable();
    void helpShowsItsTextAndCloses();
    void otherCameraReceivesNothing();

private:
    [[nodiscard]] bool isQuestionAsked()
    {
        return m_desk->back() && m_desk->isUp<SvtaParamNotSaveDialog>();
    }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsApplyTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", "SVAA009500551"}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->startWith(*m_camera));
    m_camera->forgetRequests();
}

void SettingsApplyTest::cleanup()
{
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsApplyTest::controlReachesItsRegister_data()
{
    QTest::addColumn<QByteArray>("widget");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("value");
    QTest::addColumn<QStringList>("requests");
    const auto row = [](const char* widget, const char* name, int value, const QStringList& list) {
        QTest::newRow(widget) << QByteArray(widget) << QByteArray(name) << value << list;
    };
    row("btn60", "CameraView", 60, {"50A1=60", "5020"});
    row("btn90", "CameraView", 90, {"50A1=90"});
    row("btn120", "CameraView", 120, {"50A1=120"});
    row("btnHorizontalMirror", "HorizontalMirror", 1, {"5091=1"});
    row("btnLow", "PickupSensitivity", 30, {"5071=30"});
    row("btnMiddle", "PickupSensitivity", 50, {"5071=50"});
    row("btnHeigh", "PickupSensitivity", 80, {"5071=80"});
}

void SettingsApplyTest::controlReachesItsRegister()
{
    QFETCH(const QByteArray, widget);
    QFETCH(const QByteArray, name);
    QVERIFY(m_desk->click(widget));
    QTEST(m_camera->value(name.toStdString()), "value");
    QTEST(requestsTo(*m_camera), "requests");
}

void SettingsApplyTest::sliderReachesItsControl_data()
{
    QTest::addColumn<QByteArray>("slider");
    QTest::addColumn<QByteArray>("control");
    QTest::addColumn<QByteArray>("label");
    QTest::newRow("brightness") << QByteArray("brightSlider") << QByteArray("brightness")
                                << QByteArray("brightChangeLab");
    QTest::newRow("contrast") << QByteArray("contrastSlider") << QByteArray("contrast")
                              << QByteArray("contrastChangeLab");
    QTest::newRow("saturation") << QByteArray("saturationSlider") << QByteArray("saturation")
                                << QByteArray("saturationChangeLab");
    QTest::newRow("sharpness") << QByteArray("sharpnessSlider") << QByteArray("sharpness")
                               << QByteArray("sharpnessChangeLab");
}

void SettingsApplyTest::sliderReachesItsControl()
{
    QFETCH(const QByteArray, slider);
    QFETCH(const QByteArray, control);
    QFETCH(const QByteArray, label);
    QList<int> expected = pictureOf(*m_camera);
    for (const int value : {79, 150, 177}) {
        QVERIFY(m_desk->setSlider(slider, value));
        QCOMPARE(m_camera->value(control.toStdString()), value);
        QCOMPARE(m_desk->text(label), QString::number(value - 78) + QLatin1Char('%'));
    }
    // The other three are unchanged.
    QList<int> now = pictureOf(*m_camera);
    QCOMPARE(now.removeAll(177), 1);
    QCOMPARE(now, (QList<int>{128, 128, 128}));
    QCOMPARE(requestsTo(*m_camera), QStringList());
}

void SettingsApplyTest::sliderClickedAtAnEndSetsTheEnd()
{
    const int width = m_desk->find("contrastSlider")->width();
    for (const int x : {width - 8, 8, width - 1, 0}) {
        QVERIFY(m_desk->clickSlider("contrastSlider", x));
        QCOMPARE(m_camera->value("contrast"), x <= 8 ? 78 : 178);
        QCOMPARE(m_desk->text("contrastChangeLab"),
                 x <= 8 ? QStringLiteral("0") : QStringLiteral("100%"));
    }
}

void SettingsApplyTest::wheelChangesNeitherSliderNorCamera()
{
    for (const char* slider :
         {"brightSlider", "contrastSlider", "saturationSlider", "sharpnessSlider"}) {
        for (const int notches : {1, -1, 10, -10})
            QVERIFY(m_desk->turnWheel(slider, notches));
    }
    QCOMPARE(m_desk->sliderValues(), (QList<int>{128, 128, 128, 128}));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{128, 128, 128, 128}));
    QVERIFY(m_desk->isChecked("btnStandardMode"));
}

void SettingsApplyTest::clickOnTheHandleChoosesCustomAndWritesNothing()
{
    m_camera->setValue("brightness", 99); // a write would change it
    QVERIFY(m_desk->setSlider("brightSlider", 128));
    QVERIFY(m_desk->isChecked("btnCustomMode"));
    QCOMPARE(m_camera->value("brightness"), 99);
    QVERIFY(!isQuestionAsked());
}

void SettingsApplyTest::dragReachesTheCameraWhenItEnds()
{
    QVERIFY(m_desk->dragSlider("saturationSlider", 160));
    const int value = m_desk->sliderValue("saturationSlider");
    QVERIFY2(qAbs(value - 160) <= 1, qPrintable(QString::number(value)));
    QCOMPARE(m_camera->value("saturation"), value);
    QVERIFY(m_desk->isChecked("btnCustomMode"));
}

void SettingsApplyTest::keysReachTheCamera()
{
    QVERIFY(m_desk->pressKey("brightSlider", Qt::Key_Right));
    QCOMPARE(m_camera->value("brightness"), 129);
    QVERIFY(m_desk->pressKey("sharpnessSlider", Qt::Key_PageUp));
    QCOMPARE(m_camera->value("sharpness"), 138);
    QVERIFY(m_desk->pressKey("sharpnessSlider", Qt::Key_Home));
    QCOMPARE(m_camera->value("sharpness"), 78);
    QVERIFY(m_desk->isChecked("btnCustomMode"));
    QVERIFY(m_desk->pressKey("btnHorizontalMirror", Qt::Key_Space));
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QVERIFY(m_desk->pressKey("btnMiddle", Qt::Key_Right));
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
}

void SettingsApplyTest::rightButtonChangesNothing()
{
    for (const char* widget : {"btn60", "btnHorizontalMirror", "btnHeigh", "btnIntelligent",
                               "btnBrightMode", "contrastSlider", "btnPramaSava", "btnPramaReset"})
        QVERIFY(m_desk->click(widget, Qt::RightButton));
    QVERIFY(m_desk->settle());
    QCOMPARE(requestsTo(*m_camera), QStringList());
    QCOMPARE(pictureOf(*m_camera), (QList<int>{128, 128, 128, 128}));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!isQuestionAsked());
}

void SettingsApplyTest::presetSetsAllFourControls_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QList<int>>("picture");
    QTest::newRow("standard") << QByteArray("btnStandardMode") << QList<int>{128, 128, 128, 128};
    QTest::newRow("bright") << QByteArray("btnBrightMode") << QList<int>{138, 128, 130, 120};
    QTest::newRow("vivid") << QByteArray("btnVividMode") << QList<int>{130, 128, 140, 120};
}

void SettingsApplyTest::presetSetsAllFourControls()
{
    QFETCH(const QByteArray, button);
    for (const char* slider :
         {"brightSlider", "contrastSlider", "saturationSlider", "sharpnessSlider"})
        QVERIFY(m_desk->setSlider(slider, 90));
    QVERIFY(m_desk->click(button));
    QVERIFY(m_desk->isChecked(button));
    QTEST(m_desk->sliderValues(), "picture");
    QTEST(pictureOf(*m_camera), "picture");
    QCOMPARE(requestsTo(*m_camera), QStringList());
}

void SettingsApplyTest::customPresetChangesNothing()
{
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->click("btnCustomMode"));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{130, 128, 140, 120}));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{130, 128, 140, 120}));
    QVERIFY(m_desk->isChecked("btnCustomMode"));
}

void SettingsApplyTest::sliderMovesChooseTheCustomPreset()
{
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->setSlider("contrastSlider", 101));
    QVERIFY(m_desk->isChecked("btnCustomMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 101, 130, 120}));
}

void SettingsApplyTest::switchingOnSetsTheWidestViewBeforeAnythingElse()
{
    QVERIFY(m_desk->click("btn60"));
    m_camera->forgetRequests();
    QVERIFY(m_desk->click("btnIntelligent"));
    QCOMPARE(m_camera->value("CameraView"), 120);
    QVERIFY(m_desk->isChecked("btn120"));
    QVERIFY(m_desk->settle());
    QCOMPARE(requestsTo(*m_camera),
             (QStringList{"50A1=120", "5030", "5020", "5041=0", "5081=1", "5030"}));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);
    QCOMPARE(m_camera->value("frameMaster"), 0);
    QVERIFY(m_desk->isChecked("rbtnAutoFraming"));
    QVERIFY(m_desk->isChecked("rbtnPersonalTrack"));
}

void SettingsApplyTest::switchingOnAfterFrameMasterTakesFrameMaster()
{
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    QVERIFY(m_desk->switchIntelligent());
    QCOMPARE(m_camera->value("frameMaster"), 0);
    m_camera->forgetRequests();
    QVERIFY(m_desk->switchIntelligent());
    QCOMPARE(requestsTo(*m_camera), (QStringList{"50A1=120", "5020", "5081=0", "5041=1"}));
    QVERIFY(m_desk->isChecked("rbtnFrameMaster"));
    QCOMPARE(m_desk->find("intelligentSetWidget")->size(), QSize(333, 182));
}

void SettingsApplyTest::switchingOnWithIndividualModeKeepsIt()
{
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose("rbtnDivisionMaster"));
    QVERIFY(m_desk->switchIntelligent());
    m_camera->forgetRequests();
    QVERIFY(m_desk->switchIntelligent());
    QCOMPARE(requestsTo(*m_camera),
             (QStringList{"50A1=120", "5030", "5020", "5041=0", "5081=1", "5030"}));
    QCOMPARE(m_camera->value("autoFrameMode"), 1);
    QVERIFY(m_desk->isChecked("rbtnDivisionMaster"));
}

void SettingsApplyTest::switchingOffReadsAndSwitchesOffWhatIsInUse_data()
{
    QTest::addColumn<QByteArray>("framing");
    QTest::addColumn<QStringList>("requests");
    QTest::newRow("automatic") << QByteArray("rbtnAutoFraming")
                               << QStringList{"5080", "5040", "5081=0"};
    QTest::newRow("frame master") << QByteArray("rbtnFrameMaster")
                                  << QStringList{"5080", "5040", "5041=0"};
}

void SettingsApplyTest::switchingOffReadsAndSwitchesOffWhatIsInUse()
{
    QFETCH(const QByteArray, framing);
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose(framing));
    m_desk->unlockIntelligent();
    m_camera->forgetRequests();
    QVERIFY(m_desk->click("btnIntelligent"));
    QCOMPARE(requestsTo(*m_camera), (QStringList{"5080", "5040"}));
    QCOMPARE(PendingTimers::count(kFramingOffDelayMs), 1);
    QVERIFY(m_desk->settle());
    QTEST(requestsTo(*m_camera), "requests");
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);
    QCOMPARE(m_camera->value("frameMaster"), 0);
    QVERIFY(!m_desk->find("intelligentExpandWidget")->isVisible());
    QVERIFY(m_desk->find("btn60")->isEnabled());
}

void SettingsApplyTest::switchingOffKeepsTheWidestView()
{
    QVERIFY(m_desk->click("btn90"));
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->switchIntelligent());
    QCOMPARE(m_camera->value("CameraView"), 120);
    QVERIFY(m_desk->isChecked("btn120"));
}

void SettingsApplyTest::switchIsLockedForASecond()
{
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_desk->click("btnIntelligent"));
    QVERIFY(!m_desk->find("btnIntelligent")->isEnabled());
    QVERIFY(!m_desk->find("btnIntelligent")->toolTip().isEmpty());
    QTRY_VERIFY(m_desk->find("btnIntelligent")->isEnabled());
    QVERIFY2(timer.elapsed() >= 950, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(m_desk->find("btnIntelligent")->toolTip().isEmpty());
}

void SettingsApplyTest::frameMasterComesAfterAutomaticFramingIsOff()
{
    QVERIFY(m_desk->switchIntelligent());
    m_camera->forgetRequests();
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    QCOMPARE(requestsTo(*m_camera), (QStringList{"5081=0", "5041=1"}));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);
    QCOMPARE(m_camera->value("frameMaster"), 1);
}

void SettingsApplyTest::automaticFramingComesAfterFrameMasterIsOff()
{
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    m_camera->forgetRequests();
    QVERIFY(m_desk->choose("rbtnAutoFraming"));
    QCOMPARE(requestsTo(*m_camera), (QStringList{"5041=0", "5081=1", "5030"}));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);
    QCOMPARE(m_camera->value("frameMaster"), 0);
}

void SettingsApplyTest::framingIsWrittenAfterTenMilliseconds()
{
    QVERIFY(m_desk->switchIntelligent());
    m_camera->forgetRequests();
    QVERIFY(m_desk->click("rbtnFrameMaster"));
    QCOMPARE(PendingTimers::count(kFramingDelayMs), 1);
    QCOMPARE(requestsTo(*m_camera), QStringList());
    QVERIFY(m_desk->settle());
    QCOMPARE(m_camera->value("frameMaster"), 1);
}

void SettingsApplyTest::framingChosenAgainIsWrittenAgain()
{
    QVERIFY(m_desk->switchIntelligent());
    m_camera->forgetRequests();
    QVERIFY(m_desk->choose("rbtnAutoFraming"));
    QCOMPARE(requestsTo(*m_camera), (QStringList{"5041=0", "5081=1", "5030"}));
}

void SettingsApplyTest::subModeReachesTheCamera()
{
    QVERIFY(m_desk->switchIntelligent());
    m_camera->forgetRequests();
    QVERIFY(m_desk->choose("rbtnDivisionMaster"));
    QCOMPARE(requestsTo(*m_camera), QStringList{"5031=1"});
    QVERIFY(m_desk->choose("rbtnPersonalTrack"));
    QCOMPARE(requestsTo(*m_camera), (QStringList{"5031=1", "5031=0"}));
    QVERIFY(m_desk->choose("rbtnPersonalTrack"));
    QCOMPARE(requestsTo(*m_camera), (QStringList{"5031=1", "5031=0"}));
}

void SettingsApplyTest::subModeOfTheCameraIsShownWhenAutomaticFramingReturns()
{
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    m_camera->setValue("autoFrameMode", 1);
    QVERIFY(m_desk->choose("rbtnAutoFraming"));
    QVERIFY(m_desk->isChecked("rbtnDivisionMaster"));
    QCOMPARE(m_camera->value("autoFrameMode"), 1);
}

void SettingsApplyTest::viewIsDisabledWhileIntelligentIsOn()
{
    QVERIFY(m_desk->switchIntelligent());
    m_camera->forgetRequests();
    for (const char* view : {"btn60", "btn90"}) {
        QVERIFY(!m_desk->find(view)->isEnabled());
        QVERIFY(!m_desk->find(view)->toolTip().isEmpty());
        QTest::mouseClick(m_desk->find(view), Qt::LeftButton);
        QTest::keyClick(m_desk->find(view), Qt::Key_Space);
    }
    QCOMPARE(requestsTo(*m_camera), QStringList());
    QCOMPARE(m_camera->value("CameraView"), 120);
    QVERIFY(m_desk->isChecked("btn120"));
}

void SettingsApplyTest::fastChangesOfTheFramingDoNotInterfere()
{
    QVERIFY(m_desk->switchIntelligent());
    for (int i = 0; i < 20; ++i) {
        QVERIFY(m_desk->click("rbtnFrameMaster"));
        QVERIFY(m_desk->click("rbtnAutoFraming"));
        if (i % 3 == 0)
            QTest::qWait(7);
    }
    QVERIFY(m_desk->click("rbtnFrameMaster"));
    QVERIFY(m_desk->settle());
    QCOMPARE(m_camera->value("frameMaster"), 1);
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);
    QVERIFY(m_desk->isChecked("rbtnFrameMaster"));
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
}

void SettingsApplyTest::optionsAreaHasItsThreeSizes()
{
    const auto sizes = [this] {
        return QPair<QSize, QSize>(m_desk->find("intelligentSetWidget")->size(),
                                   m_desk->find("intelligentExpandWidget")->size());
    };
    QCOMPARE(sizes().first, QSize(333, 96));
    QVERIFY(m_desk->switchIntelligent());
    QCOMPARE(sizes(), qMakePair(QSize(333, 240), QSize(312, 144)));
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    QCOMPARE(sizes(), qMakePair(QSize(333, 182), QSize(312, 96)));
    QVERIFY(m_desk->choose("rbtnAutoFraming"));
    QCOMPARE(sizes(), qMakePair(QSize(333, 240), QSize(312, 144)));
    QVERIFY(m_desk->switchIntelligent());
    QCOMPARE(sizes().first, QSize(333, 96));
    QVERIFY(!m_desk->find("intelligentExpandWidget")->isVisible());
}

void SettingsApplyTest::cameraThatRefusesKeepsTheEdit()
{
    m_camera->fault("status 1");
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->click("btn90"));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QCOMPARE(m_camera->value("PickupSensitivity"), 50);
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QVERIFY(m_desk->isChecked("btn90"));
    QVERIFY(m_desk->isChecked("btnHorizontalMirror"));
    QVERIFY(isQuestionAsked());
}

void SettingsApplyTest::cameraThatRefusesPictureControlsKeepsTheEdit()
{
    m_camera->fault("control-error");
    QVERIFY(m_desk->click("btnBrightMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{128, 128, 128, 128}));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->save());
    QCOMPARE(m_saved->group(QStringLiteral("SVAA009500551")).value(QStringLiteral("bright")), 138);
}

void SettingsApplyTest::cameraWithoutPictureControlsIsUsable()
{
    PluggedCamera plain{{"serial", "SVAA009500552"}, {"amp", "0"}};
    QVERIFY(m_desk->waitForCards(2));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->open(plain));
    QVERIFY(plain.waitFor("streaming"));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QCOMPARE(plain.value("HorizontalMirror"), 1);
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_saved->group(QStringLiteral("SVAA009500552")).value(QStringLiteral("saturation")),
             140);
}

void SettingsApplyTest::helpShowsItsTextAndCloses()
{
    QVERIFY(m_desk->click("btnTip"));
    auto* dialog = m_desk->find<SvtaCenterTipDialog>();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    QCOMPARE(dialog->findChild<QLabel*>("labTitle")->text(), QStringLiteral("人物居中"));
    QCOMPARE(dialog->findChild<QLabel*>("labMessage")->text(),
             QStringLiteral("视角内人物位置发生变化时，相机将自动调节视角，保证人物始终处于视图中心"
                            "位置"));
    QVERIFY(m_desk->answer<SvtaCenterTipDialog>("btnConfirm"));
    QVERIFY(!dialog->isVisible());
    QCOMPARE(requestsTo(*m_camera), QStringList());
}

void SettingsApplyTest::otherCameraReceivesNothing()
{
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(2));
    other.forgetRequests();
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->save());
    QVERIFY(m_desk->reset());
    QCOMPARE(requestsTo(other), QStringList());
    QCOMPARE(pictureOf(other), (QList<int>{128, 128, 128, 128}));
}

QTEST_MAIN(SettingsApplyTest)
#include "SettingsApplyTest.moc"
