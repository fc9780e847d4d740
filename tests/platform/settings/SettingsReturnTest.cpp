#include "CameraDesk.h"
#include "LoadingDialog.h"
#include "MaskForm.h"
#include "SvtaMessageDialog.h"
#include "TransPrewBtn.h"

#include <memory>
#include <QtTest>

using Pages = SvtaPagesView;

/// A camera that returns while its firmware is being installed; its return decides about success.
class SettingsReturnTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newVersionCompletesTheUpdate();
    void sameVersionFailsTheUpdate();
    void cameraThatIsNotConnectedFailsTheUpdate();
    void cameraThatDoesNotAnswerTheProbeFailsTheUpdate();
    void otherSerialNumberDoesNotEndTheUpdate();
    void otherSerialNumberFirstThenTheRightOne();
    void returnIsIgnoredWithoutTheLoadingDialog();
    void returnIsIgnoredOnAnotherPage();
    void failureOffersRetryAndLater_data();
    void failureOffersRetryAndLater();
    void listAfterACompletedUpdateOpensTheCamera();
    void backAfterAFailedUpdateSkipsTheSettingsOfAFailedCamera();

private:
    /// Shows the information page with a running installation, and unplugs the camera.
    [[nodiscard]] bool startInstallation();
    [[nodiscard]] bool isFailureUp() const;

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsReturnTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(std::initializer_list<PluggedCamera::Option>{
        {"serial", "SVAA009500551"}, {"firmware", "1.0.5"}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->startWith(*m_camera));
    QVERIFY(m_desk->click("deviceInfoBtn"));
}

void SettingsReturnTest::cleanup()
{
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

bool SettingsReturnTest::startInstallation()
{
    m_desk->find<LoadingDialog>()->show();
    m_camera->unplug();
    return QTest::qWaitForWindowExposed(m_desk->find<LoadingDialog>()) && m_desk->waitForCards(0) &&
           m_desk->isOnPage(Pages::InfoPage) && m_desk->isUp<LoadingDialog>();
}

bool SettingsReturnTest::isFailureUp() const
{
    auto* dialog = m_desk->find<SvtaMessageDialog>();
    return dialog->isVisible() && m_desk->find<MaskForm>()->isVisible() &&
           dialog->findChild<QLabel*>("labMessage")->text() ==
               QStringLiteral("Updating failed. Please try again.") &&
           dialog->findChild<QPushButton*>("btnConfirm")->text() == QStringLiteral("Retry") &&
           dialog->findChild<QPushButton*>("btnCancel")->text() == QStringLiteral("Later") &&
           dialog->findChild<QPushButton*>("btnCancel")->isVisible();
}

void SettingsReturnTest::newVersionCompletesTheUpdate()
{
    QVERIFY(startInstallation());
    m_camera->setText("firmware", "1.0.6");
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY(!m_desk->isUp<LoadingDialog>());
    QCOMPARE(m_desk->toast(), QStringLiteral("Update Complete"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
}

void SettingsReturnTest::sameVersionFailsTheUpdate()
{
    QVERIFY(startInstallation());
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(!m_desk->isUp<LoadingDialog>());
    QVERIFY(isFailureUp());
    QCOMPARE(m_desk->visibleDialogs(), 1);
    QCOMPARE(m_desk->toast(), QString());
}

void SettingsReturnTest::cameraThatIsNotConnectedFailsTheUpdate()
{
    QVERIFY(startInstallation());
    m_camera->setText("firmware", "1.0.6");
    m_camera->setText("probe", "1");
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(!m_desk->isUp<LoadingDialog>());
    QVERIFY(isFailureUp());
}

void SettingsReturnTest::cameraThatDoesNotAnswerTheProbeFailsTheUpdate()
{
    QVERIFY(startInstallation());
    m_camera->setText("firmware", "1.0.6");
    m_camera->fault("status 1 cmd=0x5000");
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(isFailureUp());
}

void SettingsReturnTest::otherSerialNumberDoesNotEndTheUpdate()
{
    QVERIFY(startInstallation());
    PluggedCamera other{{"serial", "SVAA009500552"}, {"firmware", "9.9.9"}};
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(m_desk->isUp<LoadingDialog>());
    QCOMPARE(m_desk->visibleDialogs(), 1);
    QCOMPARE(m_desk->toast(), QString());
}

void SettingsReturnTest::otherSerialNumberFirstThenTheRightOne()
{
    QVERIFY(startInstallation());
    {
        PluggedCamera other{{"serial", "SVAA009500552"}};
        QVERIFY(m_desk->waitForCards(1));
    }
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(m_desk->isUp<LoadingDialog>());
    m_camera->setText("firmware", "1.0.6");
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->toast(), QStringLiteral("Update Complete"));
}

void SettingsReturnTest::returnIsIgnoredWithoutTheLoadingDialog()
{
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(2));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(m_desk->toast(), QString());
    QCOMPARE(m_desk->text("labSNNumber"), QStringLiteral("SVAA009500551"));
}

void SettingsReturnTest::returnIsIgnoredOnAnotherPage()
{
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    m_desk->find<LoadingDialog>()->show();
    m_camera->unplug();
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    m_camera->setText("firmware", "1.0.6");
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(m_desk->isUp<LoadingDialog>());
    QCOMPARE(m_desk->toast(), QString());
}

void SettingsReturnTest::failureOffersRetryAndLater_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("Retry") << QByteArray("btnConfirm");
    QTest::newRow("Later") << QByteArray("btnCancel");
}

void SettingsReturnTest::failureOffersRetryAndLater()
{
    QFETCH(const QByteArray, button);
    QVERIFY(startInstallation());
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->answer<SvtaMessageDialog>(button));
    QVERIFY(!m_desk->isUp<SvtaMessageDialog>());
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
}

void SettingsReturnTest::listAfterACompletedUpdateOpensTheCamera()
{
    QVERIFY(startInstallation());
    m_camera->setText("firmware", "2.0.0");
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_camera->waitFor("streaming"));
    QVERIFY(m_desk->click("btnHeigh"));
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
    QVERIFY(m_desk->click("deviceInfoBtn"));
    QCOMPARE(m_desk->text("labVersionNumber"), QStringLiteral("V 2.0.0"));
}

void SettingsReturnTest::backAfterAFailedUpdateSkipsTheSettingsOfAFailedCamera()
{
    QVERIFY(startInstallation());
    m_camera->setText("probe", "1");
    m_camera->plug();
    QVERIFY(m_desk->waitForCards(1));
    QVERIFY(m_desk->answer<SvtaMessageDialog>("btnCancel"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

QTEST_MAIN(SettingsReturnTest)
#include "SettingsReturnTest.moc"
