#include "ParamSettingsPageTest.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QWheelEvent>

namespace {

/// A move with the left button down. QTest's moves go through the X server and arrive later; a
/// release would overtake them.
void dragTo(QWidget* widget, const QPoint& position)
{
    QMouseEvent move(QEvent::MouseMove, position, widget->mapToGlobal(position), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

} // namespace

/// A user's actions with mouse and keyboard, and the page's reactions.
class ParamSettingsPageTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clickOnASliderJumpsAndChoosesCustomMode_data();
    void clickOnASliderJumpsAndChoosesCustomMode();
    void clickAtTheLeftEndSetsTheMinimum();
    void clickAtTheRightEndSetsTheMaximum();
    void clickOnTheHandleChoosesCustomModeWithoutAValue();
    void secondPressOfADoubleClickJumpsToo();
    void otherMouseButtonsDoNotChangeASlider();
    void wheelNeverChangesASlider();
    void dragGivesOneValueWhenItEnds();
    void dragMovesTheLabelAlong();
    void arrowKeysStepASliderAndChooseCustomMode();
    void homeAndEndGoToTheEndsOfTheScale();
    void keyWithoutEffectSignalsNothing();
    void disabledSliderTakesNoClick();

    void tabsShowTheirPageAndMoveTheMark();
    void intelligentSwitchedOn();
    void intelligentSwitchedOffRemembersTheFraming();
    void intelligentSwitchIsLockedForASecond();
    void lockGivesTheFocusBack();
    void lockDoesNotTakeTheFocusFromWhoMovedOn();
    void framingChosen();
    void subModeChosen();
    void fieldOfViewChosen();
    void fieldOfViewIsNotForClicksWhileIntelligentIsOn();
    void sensitivityChosen();
    void mirrorSwitched();
    void imageModeChosen();
    void imageModeChosenAgainSignalsAgain();
    void saveAndDefaultAskForTheirDialogs();
    void helpButtonAsksForTheHelp();
    void shortcutsReachGridAndSave();
    void arrowKeysChooseInAGroup();

    void tabKeyWalksThroughTheFeatureTab();
    void tabKeyWalksThroughTheCameraTab();
    void everyControlHasAnAccessibleName();

private:
    std::unique_ptr<ShownPage> m_shown;
};

void ParamSettingsPageTest::init()
{
    m_shown = std::make_unique<ShownPage>();
    QVERIFY(m_shown->isShown());
}

void ParamSettingsPageTest::cleanup()
{
    m_shown.reset();
}

void ParamSettingsPageTest::clickOnASliderJumpsAndChoosesCustomMode_data()
{
    QTest::addColumn<QByteArray>("key");
    for (const char* key : {"bright", "contrast", "saturation", "sharpness"})
        QTest::newRow(key) << QByteArray(key);
}

void ParamSettingsPageTest::clickOnASliderJumpsAndChoosesCustomMode()
{
    QFETCH(const QByteArray, key);
    m_shown->showCameraTab();
    const QByteArray slider = key + "Slider";
    const int x = 100;
    const int expected = 78 + (x - 8) * 100 / (m_shown->find(slider.constData())->width() - 16);
    m_shown->clickAt(slider.constData(), x);
    QCOMPARE(m_shown->taken(),
             (QStringList{QString::fromLatin1(key + " ") + QString::number(expected),
                          QStringLiteral("imageMode 3")}));
    QVERIFY(m_shown->isChecked("btnCustomMode"));
    QCOMPARE(m_shown->text((key + "ChangeLab").constData()),
             QString::number(expected - 78) + QStringLiteral("%"));
}

void ParamSettingsPageTest::clickAtTheLeftEndSetsTheMinimum()
{
    m_shown->showCameraTab();
    for (const int x : {0, 4, 8}) {
        m_shown->page().setPicture(PictureProperty::Brightness, 128);
        m_shown->clickAt("brightSlider", x);
        QCOMPARE(m_shown->find<QSlider>("brightSlider")->value(), 78);
        QCOMPARE(m_shown->text("brightChangeLab"), QStringLiteral("0"));
    }
}

void ParamSettingsPageTest::clickAtTheRightEndSetsTheMaximum()
{
    m_shown->showCameraTab();
    const int width = m_shown->find("brightSlider")->width();
    for (const int x : {width - 8, width - 4, width - 1}) {
        m_shown->page().setPicture(PictureProperty::Brightness, 128);
        m_shown->clickAt("brightSlider", x);
        QCOMPARE(m_shown->find<QSlider>("brightSlider")->value(), 178);
        QCOMPARE(m_shown->text("brightChangeLab"), QStringLiteral("100%"));
    }
}

void ParamSettingsPageTest::clickOnTheHandleChoosesCustomModeWithoutAValue()
{
    m_shown->showCameraTab();
    m_shown->clickAt("brightSlider", 60);
    m_shown->click("btnBrightMode");
    (void)m_shown->taken();
    m_shown->clickAt("brightSlider", 60);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("imageMode 3")});
    QVERIFY(m_shown->isChecked("btnCustomMode"));
}

void ParamSettingsPageTest::secondPressOfADoubleClickJumpsToo()
{
    m_shown->showCameraTab();
    auto* slider = m_shown->find<QSlider>("brightSlider");
    QTest::mouseDClick(slider, Qt::LeftButton, Qt::NoModifier, {20, 10});
    QCOMPARE(slider->value(), 78 + 12 * 100 / (slider->width() - 16));
    QCOMPARE(m_shown->taken().filter(QStringLiteral("bright ")).size(), 1);
}

void ParamSettingsPageTest::otherMouseButtonsDoNotChangeASlider()
{
    m_shown->showCameraTab();
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton})
        QTest::mouseClick(m_shown->find("brightSlider"), button, Qt::NoModifier, {20, 10});
    QCOMPARE(m_shown->find<QSlider>("brightSlider")->value(), 128);
    QCOMPARE(m_shown->taken(), QStringList());
}

void ParamSettingsPageTest::wheelNeverChangesASlider()
{
    m_shown->showCameraTab();
    auto* slider = m_shown->find<QSlider>("brightSlider");
    slider->setFocus(Qt::TabFocusReason);
    for (const int angle : {120, -120, 1200}) {
        const QPointF position(slider->rect().center());
        QWheelEvent event(position, slider->mapToGlobal(position.toPoint()), {}, {0, angle},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(slider, &event);
    }
    QCOMPARE(slider->value(), 128);
    QCOMPARE(m_shown->taken(), QStringList());
}

void ParamSettingsPageTest::dragGivesOneValueWhenItEnds()
{
    m_shown->showCameraTab();
    auto* slider = m_shown->find<QSlider>("brightSlider");
    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, {20, 10});
    (void)m_shown->taken();
    for (int x = 25; x <= 90; x += 5)
        dragTo(slider, {x, 10});
    QVERIFY(slider->sliderPosition() > slider->value() + 40);
    QCOMPARE(m_shown->taken(), QStringList());
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, {90, 10});
    const QStringList signalled = m_shown->taken();
    QCOMPARE(signalled, QStringList{QStringLiteral("bright %1").arg(slider->value())});
    QVERIFY(qAbs(slider->value() - (78 + 82 * 100 / (slider->width() - 16))) <= 1);
}

void ParamSettingsPageTest::dragMovesTheLabelAlong()
{
    m_shown->showCameraTab();
    auto* slider = m_shown->find<QSlider>("brightSlider");
    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, {20, 10});
    dragTo(slider, {90, 10});
    QVERIFY(slider->sliderPosition() > slider->value() + 40);
    QCOMPARE(m_shown->text("brightChangeLab"),
             QString::number(slider->sliderPosition() - 78) + QStringLiteral("%"));
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, {90, 10});
}

void ParamSettingsPageTest::arrowKeysStepASliderAndChooseCustomMode()
{
    m_shown->showCameraTab();
    auto* slider = m_shown->find<QSlider>("contrastSlider");
    slider->setFocus(Qt::TabFocusReason);
    QTest::keyClick(slider, Qt::Key_Right);
    QCOMPARE(m_shown->taken(),
             (QStringList{QStringLiteral("contrast 129"), QStringLiteral("imageMode 3")}));
    QVERIFY(m_shown->isChecked("btnCustomMode"));
    QCOMPARE(m_shown->text("contrastChangeLab"), QStringLiteral("51%"));
    QTest::keyClick(slider, Qt::Key_Left);
    QTest::keyClick(slider, Qt::Key_Left);
    QCOMPARE(slider->value(), 127);
    QTest::keyClick(slider, Qt::Key_PageUp);
    QCOMPARE(slider->value(), 137);
}

void ParamSettingsPageTest::homeAndEndGoToTheEndsOfTheScale()
{
    m_shown->showCameraTab();
    auto* slider = m_shown->find<QSlider>("contrastSlider");
    slider->setFocus(Qt::TabFocusReason);
    QTest::keyClick(slider, Qt::Key_Home);
    QCOMPARE(m_shown->text("contrastChangeLab"), QStringLiteral("0"));
    QTest::keyClick(slider, Qt::Key_End);
    QCOMPARE(m_shown->text("contrastChangeLab"), QStringLiteral("100%"));
}

void ParamSettingsPageTest::keyWithoutEffectSignalsNothing()
{
    m_shown->showCameraTab();
    auto* slider = m_shown->find<QSlider>("contrastSlider");
    m_shown->page().setPicture(PictureProperty::Contrast, 178);
    (void)m_shown->taken();
    slider->setFocus(Qt::TabFocusReason);
    QTest::keyClick(slider, Qt::Key_Right);
    QCOMPARE(m_shown->taken(), QStringList());
    m_shown->page().setPicture(PictureProperty::Contrast, 100);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("contrast 100")});
}

void ParamSettingsPageTest::disabledSliderTakesNoClick()
{
    m_shown->showCameraTab();
    m_shown->find("brightSlider")->setEnabled(false);
    m_shown->clickAt("brightSlider", 20);
    QCOMPARE(m_shown->taken(), QStringList());
}

void ParamSettingsPageTest::tabsShowTheirPageAndMoveTheMark()
{
    QCOMPARE(m_shown->find("transparentWidget")->pos(), QPoint(75, 235));
    m_shown->click("btnCameraSetting");
    QVERIFY(m_shown->find("cameraSettingPage")->isVisible());
    QVERIFY(!m_shown->isChecked("btnFeatureSetting"));
    QCOMPARE(m_shown->find("transparentWidget")->pos(), QPoint(256, 235));
    m_shown->click("btnFeatureSetting");
    QVERIFY(m_shown->find("featureSettingPage")->isVisible());
    QVERIFY(!m_shown->isChecked("btnCameraSetting"));
    QCOMPARE(m_shown->find("transparentWidget")->pos(), QPoint(75, 235));
    QCOMPARE(m_shown->taken(), QStringList());
}

void ParamSettingsPageTest::intelligentSwitchedOn()
{
    m_shown->click("btnIntelligent");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("intelligent on 1")});
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 240));
    QCOMPARE(m_shown->sizeOf("intelligentExpandWidget"), QSize(312, 144));
    QVERIFY(m_shown->find("intelligentExpandWidget")->isVisible());
    QVERIFY(m_shown->find("autoFramingExpandWidget")->isVisible());
    QVERIFY(!m_shown->page().isCameraViewEnabled());
}

void ParamSettingsPageTest::intelligentSwitchedOffRemembersTheFraming()
{
    m_shown->page().setIntelligent(true);
    m_shown->page().setFrameMaster();
    (void)m_shown->taken();
    m_shown->click("btnIntelligent");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("intelligent off 0")});
    QVERIFY(!m_shown->find("intelligentExpandWidget")->isVisible());
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 96));
    QVERIFY(m_shown->page().isCameraViewEnabled());

    m_shown->page().setAutoFraming();
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->find("btnIntelligent")->isEnabled(), 2000);
    m_shown->page().setIntelligent(false);
    (void)m_shown->taken();
    m_shown->click("btnIntelligent");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("intelligent on 0")});
}

void ParamSettingsPageTest::intelligentSwitchIsLockedForASecond()
{
    m_shown->click("btnIntelligent");
    QElapsedTimer locked;
    locked.start();
    QVERIFY(!m_shown->find("btnIntelligent")->isEnabled());
    QVERIFY(!m_shown->find("btnIntelligent")->toolTip().isEmpty());
    m_shown->click("btnIntelligent");
    QCOMPARE(m_shown->taken().size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->find("btnIntelligent")->isEnabled(), 3000);
    QVERIFY2(locked.elapsed() >= 940, qPrintable(QString::number(locked.elapsed())));
    QVERIFY(m_shown->find("btnIntelligent")->toolTip().isEmpty());
}

void ParamSettingsPageTest::lockGivesTheFocusBack()
{
    auto* button = m_shown->find("btnIntelligent");
    button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button, Qt::Key_Space);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("intelligent on 1")});
    QVERIFY(!button->hasFocus());
    QTRY_VERIFY_WITH_TIMEOUT(button->hasFocus(), 3000);
}

void ParamSettingsPageTest::lockDoesNotTakeTheFocusFromWhoMovedOn()
{
    auto* button = m_shown->find("btnIntelligent");
    button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button, Qt::Key_Space);
    m_shown->find("btnHorizontalMirror")->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY_WITH_TIMEOUT(button->isEnabled(), 3000);
    QVERIFY(m_shown->find("btnHorizontalMirror")->hasFocus());
}

void ParamSettingsPageTest::framingChosen()
{
    m_shown->page().setIntelligent(true);
    m_shown->click("rbtnFrameMaster");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("framing 1")});
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 182));
    QCOMPARE(m_shown->sizeOf("intelligentExpandWidget"), QSize(312, 96));
    QVERIFY(!m_shown->find("autoFramingExpandWidget")->isVisible());
    m_shown->click("rbtnAutoFraming");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("framing 0")});
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 240));
    QCOMPARE(m_shown->sizeOf("intelligentExpandWidget"), QSize(312, 144));
    QVERIFY(m_shown->find("autoFramingExpandWidget")->isVisible());
}

void ParamSettingsPageTest::subModeChosen()
{
    m_shown->page().setIntelligent(true);
    m_shown->page().setAutoFraming();
    (void)m_shown->taken();
    m_shown->click("rbtnDivisionMaster");
    QStringList signalled = m_shown->taken();
    signalled.sort();
    QCOMPARE(signalled,
             (QStringList{QStringLiteral("group off"), QStringLiteral("individual on")}));
    m_shown->click("rbtnPersonalTrack");
    signalled = m_shown->taken();
    signalled.sort();
    QCOMPARE(signalled,
             (QStringList{QStringLiteral("group on"), QStringLiteral("individual off")}));
}

void ParamSettingsPageTest::fieldOfViewChosen()
{
    QCOMPARE(m_shown->page().selectedCameraView(), 120);
    for (const auto& [name, degrees] :
         {std::pair("btn60", 60), std::pair("btn90", 90), std::pair("btn120", 120)}) {
        m_shown->click(name);
        QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("viewSwitch on")});
        QCOMPARE(m_shown->page().selectedCameraView(), degrees);
    }
}

void ParamSettingsPageTest::fieldOfViewIsNotForClicksWhileIntelligentIsOn()
{
    m_shown->page().setIntelligent(true);
    for (const char* name : {"btn60", "btn90", "btn120"}) {
        m_shown->click(name);
        QTest::keyClick(m_shown->find(name), Qt::Key_Space);
        QVERIFY(!m_shown->find(name)->toolTip().isEmpty());
    }
    QCOMPARE(m_shown->taken(), QStringList());
    QCOMPARE(m_shown->page().selectedCameraView(), 120);
    m_shown->page().setIntelligent(false);
    m_shown->click("btn60");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("viewSwitch on")});
    QVERIFY(m_shown->find("btn60")->toolTip().isEmpty());
}

void ParamSettingsPageTest::sensitivityChosen()
{
    for (const auto& [name, level] :
         {std::pair("btnLow", 30), std::pair("btnHeigh", 80), std::pair("btnMiddle", 50)}) {
        m_shown->page().resetPage(0);
        m_shown->click(name);
        QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("sensitivitySwitch %1").arg(level)});
        QCOMPARE(m_shown->page().selectedSensitivity(), level);
    }
}

void ParamSettingsPageTest::mirrorSwitched()
{
    m_shown->click("btnHorizontalMirror");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("mirror on")});
    m_shown->click("btnHorizontalMirror");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("mirror off")});
}

void ParamSettingsPageTest::imageModeChosen()
{
    m_shown->showCameraTab();
    for (const auto& [name, mode] :
         {std::pair("btnBrightMode", 1), std::pair("btnVividMode", 2),
          std::pair("btnCustomMode", 3), std::pair("btnStandardMode", 0)}) {
        m_shown->click(name);
        QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("imageMode %1").arg(mode)});
        QVERIFY(m_shown->isChecked(name));
    }
}

void ParamSettingsPageTest::imageModeChosenAgainSignalsAgain()
{
    m_shown->showCameraTab();
    m_shown->click("btnStandardMode");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("imageMode 0")});
}

void ParamSettingsPageTest::saveAndDefaultAskForTheirDialogs()
{
    m_shown->showCameraTab();
    m_shown->click("btnPramaSava");
    QCOMPARE(m_shown->taken(), (QStringList{QStringLiteral("save"), QStringLiteral("saveDialog")}));
    m_shown->click("btnPramaReset");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("resetDialog")});
}

void ParamSettingsPageTest::helpButtonAsksForTheHelp()
{
    m_shown->click("btnTip");
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("tipDialog")});
}

void ParamSettingsPageTest::shortcutsReachGridAndSave()
{
    QTest::keyClick(&m_shown->page(), Qt::Key_G, Qt::ControlModifier);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("line")});
    QTest::keyClick(&m_shown->page(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(m_shown->taken(), (QStringList{QStringLiteral("save"), QStringLiteral("saveDialog")}));
}

void ParamSettingsPageTest::arrowKeysChooseInAGroup()
{
    m_shown->find("btn120")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_shown->find("btn120"), Qt::Key_Left);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("viewSwitch on")});
    QCOMPARE(m_shown->page().selectedCameraView(), 90);
    QVERIFY(m_shown->find("btn90")->hasFocus());
}

void ParamSettingsPageTest::tabKeyWalksThroughTheFeatureTab()
{
    m_shown->page().setIntelligent(true);
    m_shown->find("btnFeatureSetting")->setFocus(Qt::TabFocusReason);
    for (const char* name : {"btnTip", "btnIntelligent", "rbtnAutoFraming", "rbtnPersonalTrack",
                             "btnHorizontalMirror", "btnMiddle", "btnFeatureSetting"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(name));
    }
    m_shown->page().setIntelligent(false);
    m_shown->find("btnIntelligent")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("btn120"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("btnIntelligent"));
}

void ParamSettingsPageTest::tabKeyWalksThroughTheCameraTab()
{
    m_shown->find("btnFeatureSetting")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_shown->find("btnFeatureSetting"), Qt::Key_Right);
    QVERIFY(m_shown->find("cameraSettingPage")->isVisible());
    QVERIFY(m_shown->find("btnCameraSetting")->hasFocus());
    for (const char* name :
         {"btnStandardMode", "brightSlider", "contrastSlider", "saturationSlider",
          "sharpnessSlider", "btnPramaReset", "btnPramaSava"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(name));
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(m_shown->taken(), (QStringList{QStringLiteral("save"), QStringLiteral("saveDialog")}));
}

void ParamSettingsPageTest::everyControlHasAnAccessibleName()
{
    int controls = 0;
    for (QWidget* widget : m_shown->page().findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus && !qobject_cast<QAbstractButton*>(widget))
            continue;
        ++controls;
        QVERIFY2(!QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty(),
                 qPrintable(widget->objectName()));
    }
    QCOMPARE(controls, 25);
}

QTEST_MAIN(ParamSettingsPageTest)
#include "ParamSettingsPageTest.moc"
