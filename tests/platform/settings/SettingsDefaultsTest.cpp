#include "CameraDesk.h"
#include "MaskForm.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"

#include <memory>
#include <QtTest>

using Pages = SvtaPagesView;

/// The button "Default" and its question.
class SettingsDefaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void questionHasItsTexts();
    void cancelChangesNothing();
    void defaultsReachTheCameraInTheirOrder();
    void defaultsFromFrameMasterSwitchItOffFirst();
    void defaultsAreShown();
    void defaultsLockTheIntelligentSwitch();
    void defaultsAreEditsUntilSaved();
    void defaultsCanBeDiscarded();
    void defaultsCanBeSaved();
    void noticeOf4kComesWithTheDefaults();

private:
    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsDefaultsTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", "SVAA009500551"}});
    m_camera->setValue("CameraView", 60);
    m_camera->setValue("HorizontalMirror", 1);
    m_camera->setValue("PickupSensitivity", 80);
    m_camera->setValue("autoFrameMode", 1);
    m_camera->setValue("brightness", 100);
    m_camera->setValue("sharpness", 90);
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->startWith(*m_camera));
    m_camera->forgetRequests();
}

void SettingsDefaultsTest::cleanup()
{
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsDefaultsTest::questionHasItsTexts()
{
    QVERIFY(m_desk->click("btnPramaReset"));
    auto* dialog = m_desk->find<SvtaParamResetDialog>();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    QCOMPARE(dialog->findChild<QLabel*>("labMessage")->text(), QStringLiteral("Reset parameters?"));
    QCOMPARE(dialog->findChild<QPushButton*>("btnCancel")->text(), QStringLiteral("Cancel"));
    QCOMPARE(dialog->findChild<QPushButton*>("btnConfirm")->text(), QStringLiteral("Confirm"));
    QVERIFY(m_desk->answer<SvtaParamResetDialog>("btnCancel"));
}

void SettingsDefaultsTest::cancelChangesNothing()
{
    QVERIFY(m_desk->click("btnPramaReset"));
    QVERIFY(m_desk->answer<SvtaParamResetDialog>("btnCancel"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(requestsTo(*m_camera), QStringList());
    QCOMPARE(pictureOf(*m_camera), (QList<int>{100, 128, 128, 90}));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsDefaultsTest::defaultsReachTheCameraInTheirOrder()
{
    QVERIFY(m_desk->reset());
    // The view is written with the defaults and again by the framing, which needs the widest view.
    QCOMPARE(requestsTo(*m_camera), (QStringList{"50A1=120", "50A1=120", "5030", "5020", "5031=0",
                                                 "5071=50", "5091=0", "5041=0", "5081=1", "5030"}));
    QCOMPARE(m_camera->value("CameraView"), 120);
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);
    QCOMPARE(m_camera->value("frameMaster"), 0);
    QCOMPARE(m_camera->value("autoFrameMode"), 0);
    QCOMPARE(m_camera->value("PickupSensitivity"), 50);
    QCOMPARE(m_camera->value("HorizontalMirror"), 0);
    QCOMPARE(pictureOf(*m_camera), (QList<int>{128, 128, 128, 128}));
}

void SettingsDefaultsTest::defaultsFromFrameMasterSwitchItOffFirst()
{
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    m_camera->forgetRequests();
    QVERIFY(m_desk->reset());
    const QStringList writes = writesTo(*m_camera);
    QVERIFY(writes.indexOf("5041=0") >= 0);
    QVERIFY(writes.indexOf("5041=0") < writes.indexOf("5081=1"));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);
}

void SettingsDefaultsTest::defaultsAreShown()
{
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->reset());
    QCOMPARE(m_desk->sliderValues(), (QList<int>{128, 128, 128, 128}));
    for (const char* name : {"btnStandardMode", "btn120", "btnIntelligent", "rbtnAutoFraming",
                             "rbtnPersonalTrack", "btnMiddle"})
        QVERIFY2(m_desk->isChecked(name), name);
    QVERIFY(!m_desk->isChecked("btnHorizontalMirror"));
    QVERIFY(!m_desk->find("btn60")->isEnabled());
    QCOMPARE(m_desk->find("intelligentSetWidget")->size(), QSize(333, 240));
    QCOMPARE(m_desk->text("brightChangeLab"), QStringLiteral("50%"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!m_desk->find<MaskForm>()->isVisible());
}

void SettingsDefaultsTest::defaultsLockTheIntelligentSwitch()
{
    QVERIFY(m_desk->reset());
    QVERIFY(!m_desk->find("btnIntelligent")->isEnabled());
    QTRY_VERIFY(m_desk->find("btnIntelligent")->isEnabled());
}

void SettingsDefaultsTest::defaultsAreEditsUntilSaved()
{
    QVERIFY(m_desk->reset());
    QVERIFY(!m_saved->exists());
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isUp<SvtaParamNotSaveDialog>());
}

void SettingsDefaultsTest::defaultsCanBeDiscarded()
{
    QVERIFY(m_desk->reset());
    QVERIFY(m_desk->discard());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{100, 128, 128, 90}));
    QCOMPARE(m_camera->value("CameraView"), 60);
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);
    QCOMPARE(m_camera->value("frameMaster"), 0);
}

void SettingsDefaultsTest::defaultsCanBeSaved()
{
    QVERIFY(m_desk->reset());
    QVERIFY(m_desk->save());
    const QMap<QString, int> saved{{"bright", 128},
                                   {"contrast", 128},
                                   {"saturation", 128},
                                   {"sharpness", 128},
                                   {"imagemode", 0}};
    QCOMPARE(m_saved->group(QStringLiteral("SVAA009500551")), saved);
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsDefaultsTest::noticeOf4kComesWithTheDefaults()
{
    m_camera->setValue("width", 3840);
    m_camera->setValue("height", 2160);
    m_camera->setValue("streamon", 1);
    QVERIFY(m_desk->clickPreview()); // otherwise the camera would report the program's own stream
    QVERIFY(m_desk->settle());
    QVERIFY(!m_desk->find("tipWidgetFor4k")->isVisible());
    QVERIFY(m_desk->reset());
    QVERIFY(m_desk->find("tipWidgetFor4k")->isVisible());
}

QTEST_MAIN(SettingsDefaultsTest)
#include "SettingsDefaultsTest.moc"
