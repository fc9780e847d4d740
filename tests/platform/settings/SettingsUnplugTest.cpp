#include "CameraDesk.h"
#include "LoadingDialog.h"
#include "MaskForm.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaDeviceWidget.h"
#include "SvtaMoreWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "TransparentBtn.h"
#include "TransparentWidget.h"
#include "TransPrewBtn.h"

#include <memory>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

const char* const kSerial = "SVAA009500551";

} // namespace

/// Cameras that are unplugged while a page or dialog is open.
class SettingsUnplugTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void settingsPageReturnsToTheList();
    void returnTakesTwentyMilliseconds();
    void overlaysAreHiddenWithThePage();
    void informationPageReturnsToTheList();
    void aboutPageReturnsToTheList();
    void listStaysShown();
    void openQuestionIsHidden_data();
    void openQuestionIsHidden();
    void oneQuestionIsHiddenAtMost();
    void helpStaysShown();
    void loadingDialogKeepsThePages();
    void otherCameraOfTheSameModelChangesNothing();
    void camerasOfOneModelAreToldApart();
    void serialNumberLeavesWithItsCamera();
    void deviceOfAnotherModelChangesNothing_data();
    void deviceOfAnotherModelChangesNothing();
    void deviceOfAnotherMakerOnTheInformationPageChangesNothing();
    void otherCameraThatComesChangesNothing();
    void unsavedEditsAreDiscardedWithTheCamera_data();
    void unsavedEditsAreDiscardedWithTheCamera();
    void returningCameraIsReadAgain();
    void savedPictureIsAppliedToTheReturningCamera();
    void cameraReturnsAtItsOldPath();
    void unplugDuringTheLockOfTheBackButton();
    void unplugWithADeferredFramingStep_data();
    void unplugWithADeferredFramingStep();
    void unplugInsideARequest();
    void clicksAfterTheUnplugAreHarmless();
    void unpluggedTwentyTimes();
    void unpluggedCameraHasNoOpenHandles();

private:
    [[nodiscard]] bool pullOut()
    {
        m_camera->unplug();
        return m_desk->waitForCards(0);
    }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsUnplugTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", kSerial}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->startWith(*m_camera));
}

void SettingsUnplugTest::cleanup()
{
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsUnplugTest::settingsPageReturnsToTheList()
{
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY(!m_desk->find("backWidget")->isVisible());
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!m_desk->find<TransPrewBtn>()->isPreviewOpen());
}

void SettingsUnplugTest::returnTakesTwentyMilliseconds()
{
    m_camera->unplug();
    QTRY_COMPARE(m_desk->cardCount(), 0);
    // The list has just been rebuilt; the page changes a moment later.
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY2(timer.elapsed() < 500, qPrintable(QString::number(timer.elapsed())));
}

void SettingsUnplugTest::overlaysAreHiddenWithThePage()
{
    QVERIFY(m_desk->find<TransparentBtn>()->isVisible());
    QTest::keyClick(&m_desk->window(), Qt::Key_G, Qt::ControlModifier);
    QVERIFY(m_desk->find<TransparentWidget>()->isVisible());
    QVERIFY(pullOut());
    QVERIFY(!m_desk->find<TransparentBtn>()->isVisible());
    QVERIFY(!m_desk->find<TransPrewBtn>()->isVisible());
    QVERIFY(!m_desk->find<TransparentWidget>()->isVisible());
}

void SettingsUnplugTest::informationPageReturnsToTheList()
{
    QVERIFY(m_desk->click("deviceInfoBtn"));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsUnplugTest::aboutPageReturnsToTheList()
{
    QVERIFY(m_desk->click("moreBtn"));
    QTest::mouseClick(m_desk->find("btnAbout"), Qt::LeftButton);
    QVERIFY(m_desk->isOnPage(Pages::AboutUsPage));
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsUnplugTest::listStaysShown()
{
    QVERIFY(m_desk->back());
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY(m_desk->find("noDeviceWidget")->isVisible());
}

void SettingsUnplugTest::openQuestionIsHidden_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("save") << QByteArray("btnPramaSava");
    QTest::newRow("default") << QByteArray("btnPramaReset");
    QTest::newRow("leave") << QByteArray("backBtn");
}

void SettingsUnplugTest::openQuestionIsHidden()
{
    QFETCH(const QByteArray, button);
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->click(button));
    QTRY_COMPARE(m_desk->visibleDialogs(), 1);
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!m_desk->find<MaskForm>()->isVisible());
    QVERIFY(!m_saved->exists());
    // The window accepts the mouse again.
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->open(*m_camera));
}

void SettingsUnplugTest::oneQuestionIsHiddenAtMost()
{
    m_desk->find<SvtaParamSaveDialog>()->show();
    m_desk->find<SvtaParamResetDialog>()->show();
    m_desk->find<SvtaParamNotSaveDialog>()->show();
    QVERIFY(pullOut());
    QVERIFY(!m_desk->isUp<SvtaParamNotSaveDialog>());
    QVERIFY(m_desk->isUp<SvtaParamResetDialog>());
    QVERIFY(m_desk->isUp<SvtaParamSaveDialog>());
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    // A camera whose pages were left is not open, so pulling it out concerns no question.
    QVERIFY(pullOut());
    QVERIFY(m_desk->isUp<SvtaParamResetDialog>());
    QVERIFY(m_desk->isUp<SvtaParamSaveDialog>());
}

void SettingsUnplugTest::helpStaysShown()
{
    QVERIFY(m_desk->click("btnTip"));
    QVERIFY(QTest::qWaitForWindowExposed(m_desk->find<SvtaCenterTipDialog>()));
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY(m_desk->isUp<SvtaCenterTipDialog>());
    QVERIFY(m_desk->answer<SvtaCenterTipDialog>("btnConfirm"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
}

void SettingsUnplugTest::loadingDialogKeepsThePages()
{
    QVERIFY(m_desk->click("deviceInfoBtn"));
    m_desk->find<LoadingDialog>()->show();
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(m_desk->isUp<LoadingDialog>());
    QCOMPARE(m_desk->toast(), QString());
}

void SettingsUnplugTest::otherCameraOfTheSameModelChangesNothing()
{
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(2));
    QVERIFY(m_desk->click("btnHeigh"));
    other.unplug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QVERIFY(m_camera->waitFor("streaming"));
    QVERIFY(m_desk->find<TransPrewBtn>()->isPreviewOpen());
    QVERIFY(m_desk->click("btnLow"));
    QCOMPARE(m_camera->value("PickupSensitivity"), 30);
}

void SettingsUnplugTest::camerasOfOneModelAreToldApart()
{
    const QString first = QStringLiteral("Serial number: SVAA009500551");
    const QString second = QStringLiteral("Serial number: SVAA009500552");
    const auto told = [this](PluggedCamera& camera) {
        return m_desk->card(camera)->accessibleDescription();
    };
    // Only the list asks a camera that arrives.
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(2));
    QVERIFY(m_desk->back());
    QCOMPARE(told(*m_camera), first);
    QCOMPARE(told(other), QString());
    QVERIFY(m_desk->open(other));
    QVERIFY(m_desk->back());
    QCOMPARE(told(other), second);

    QVERIFY(m_desk->replug(*m_camera));
    QCOMPARE(told(*m_camera), first);
    QCOMPARE(told(other), second);
    QVERIFY(m_desk->card(other)->toolTip().contains(second));
}

void SettingsUnplugTest::serialNumberLeavesWithItsCamera()
{
    QVERIFY(m_desk->back());
    const QString path = m_camera->hidPath();
    // On this page no camera is asked.
    m_desk->window().showView(Pages::AboutUsPage);
    QVERIFY(pullOut());
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(1));
    QCOMPARE(other.hidPath(), path);
    QCOMPARE(m_desk->card(other)->accessibleDescription(), QString());
}

void SettingsUnplugTest::deviceOfAnotherModelChangesNothing_data()
{
    QTest::addColumn<QByteArray>("vendor");
    QTest::addColumn<QByteArray>("product");
    QTest::newRow("other maker and product") << QByteArray("1111") << QByteArray("2222");
    QTest::newRow("other maker") << QByteArray("1111") << QByteArray("b215");
    QTest::newRow("other product") << QByteArray("b206") << QByteArray("2222");
}

void SettingsUnplugTest::deviceOfAnotherModelChangesNothing()
{
    QFETCH(const QByteArray, vendor);
    QFETCH(const QByteArray, product);
    PluggedCamera stranger{{"vid", vendor.toStdString()}, {"pid", product.toStdString()}};
    QTest::qWait(1500); // longer than a rebuild of the list
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    stranger.unplug();
    QTest::qWait(1500);
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QCOMPARE(m_desk->cardCount(), 1);
    QVERIFY(m_camera->waitFor("streaming"));
}

void SettingsUnplugTest::deviceOfAnotherMakerOnTheInformationPageChangesNothing()
{
    QVERIFY(m_desk->click("deviceInfoBtn"));
    m_desk->find<LoadingDialog>()->show();
    m_camera->forgetRequests();
    PluggedCamera stranger{{"vid", "1111"}, {"pid", "2222"}};
    QTest::qWait(1500);
    stranger.unplug();
    QTest::qWait(1500);
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(m_desk->isUp<LoadingDialog>());
    // Only the list sends requests: it asks whether its cameras are connected.
    QCOMPARE(requestsTo(*m_camera).filter("5000").size(), requestsTo(*m_camera).size());
}

void SettingsUnplugTest::otherCameraThatComesChangesNothing()
{
    QVERIFY(m_desk->click("btnHeigh"));
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(2));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QCOMPARE(other.value("HorizontalMirror"), 0);
}

void SettingsUnplugTest::unsavedEditsAreDiscardedWithTheCamera_data()
{
    QTest::addColumn<int>("isVolatile");
    QTest::addColumn<QByteArray>("sensitivity");
    QTest::newRow("camera that keeps its settings") << 0 << QByteArray("btnHeigh");
    QTest::newRow("camera that loses its settings") << 1 << QByteArray("btnMiddle");
}

/// The program forgets the edits; the page then shows what the camera still has of them.
void SettingsUnplugTest::unsavedEditsAreDiscardedWithTheCamera()
{
    QFETCH(const int, isVolatile);
    QFETCH(const QByteArray, sensitivity);
    m_camera->setValue("volatile", isVolatile);
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(pullOut());
    QVERIFY(!m_saved->exists());
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked(sensitivity));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{128, 128, 128, 128}));
    QCOMPARE(m_desk->sliderValues(), pictureOf(*m_camera));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsUnplugTest::returningCameraIsReadAgain()
{
    QVERIFY(pullOut());
    m_camera->setValue("PickupSensitivity", 30);
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    m_camera->setValue("PickupSensitivity", 80);
    m_camera->setValue("HorizontalMirror", 1);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QVERIFY(m_desk->isChecked("btnHorizontalMirror"));
    QVERIFY(m_camera->waitFor("streaming"));
}

void SettingsUnplugTest::savedPictureIsAppliedToTheReturningCamera()
{
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QVERIFY(pullOut());
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->isChecked("btnBrightMode"));
}

void SettingsUnplugTest::cameraReturnsAtItsOldPath()
{
    const QString before = m_camera->hidPath();
    QVERIFY(pullOut());
    m_camera->plug();
    QCOMPARE(m_camera->hidPath(), before);
    QVERIFY(m_desk->waitForCards(1));
}

void SettingsUnplugTest::unplugDuringTheLockOfTheBackButton()
{
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->open(*m_camera));
    m_desk->find("backBtn")->setEnabled(true);
    QVERIFY(m_desk->click("btnHeigh"));
    QTest::mouseClick(m_desk->find("backBtn"), Qt::LeftButton);
    QVERIFY(pullOut());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->open(*m_camera));
    QTRY_VERIFY(m_desk->find("backBtn")->isEnabled());
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsUnplugTest::unplugWithADeferredFramingStep_data()
{
    QTest::addColumn<QByteArray>("widget");
    QTest::newRow("switched off") << QByteArray("btnIntelligent");
    QTest::newRow("frame master") << QByteArray("rbtnFrameMaster");
}

/// The step never reaches the camera, which keeps the framing that it had.

void SettingsUnplugTest::unplugWithADeferredFramingStep()
{
    QFETCH(const QByteArray, widget);
    QVERIFY(m_desk->switchIntelligent());
    m_desk->unlockIntelligent();
    QVERIFY(m_desk->click(widget));
    m_camera->unplug();
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);
    QCOMPARE(m_camera->value("frameMaster"), 0);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("btnIntelligent"));
    QVERIFY(m_desk->isChecked("rbtnAutoFraming"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsUnplugTest::unplugInsideARequest()
{
    m_camera->fault("unplug-at 1 cmd=0x5071");
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    m_camera->clearFaults();
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->open(*m_camera));
}

void SettingsUnplugTest::clicksAfterTheUnplugAreHarmless()
{
    m_camera->unplug();
    for (const char* widget : {"btnHeigh", "btn60", "btnHorizontalMirror", "btnIntelligent",
                               "btnVividMode", "btnCustomMode"})
        QVERIFY(m_desk->click(widget));
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("btnMiddle"));
    QVERIFY(m_desk->isChecked("btnStandardMode"));
}

void SettingsUnplugTest::unpluggedTwentyTimes()
{
    for (int i = 0; i < 20; ++i) {
        if (i % 2 == 0)
            QVERIFY(m_desk->click("btnHorizontalMirror"));
        QVERIFY(pullOut());
        QVERIFY(m_desk->isOnPage(Pages::HomePage));
        m_camera->plug();
        QVERIFY(m_desk->waitForCards(1));
        QVERIFY(m_desk->open(*m_camera));
        QCOMPARE(m_desk->page(), int(Pages::SettingPage));
    }
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsUnplugTest::unpluggedCameraHasNoOpenHandles()
{
    QVERIFY(pullOut());
    QVERIFY(m_camera->isReleased());
}

QTEST_MAIN(SettingsUnplugTest)
#include "SettingsUnplugTest.moc"
