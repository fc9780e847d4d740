#include "CameraDesk.h"
#include "OnScreen.h"
#include "QtSingleApplication.h"
#include "SvtaMoreWidget.h"
#include "TransparentBtn.h"
#include "TransPrewBtn.h"
#include "WindowManager.h"

#include <functional>
#include <memory>
#include <QProcess>
#include <QSystemTrayIcon>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

/// After the window was hidden.
constexpr int kCameraOffMs = 300;
constexpr int kSecondStartMs = 20000;

const QString kInUse = QStringLiteral("Camera is in use by other app");

using Step = std::function<bool(CameraDesk&)>;

bool minimizeByButton(CameraDesk& desk)
{
    return desk.click("minimumBtn");
}

bool minimizeInTheTaskBar(CameraDesk& desk)
{
    WindowManager::minimize(desk.window());
    return true;
}

bool closeToTray(CameraDesk& desk)
{
    return desk.click("closeBtn");
}

bool quitInTheMenu(CameraDesk& desk)
{
    return desk.click("moreBtn") && QTest::qWaitForWindowExposed(desk.find<SvtaMoreWidget>()) &&
           desk.click("btnQuit");
}

bool activateInTheTaskBar(CameraDesk& desk)
{
    WindowManager::activate(desk.window());
    return true;
}

bool clickInTheTray(CameraDesk& desk)
{
    desk.window().slotTrayActivated(QSystemTrayIcon::Trigger);
    return true;
}

/// The program is started once more while this one runs.
bool startAgain(CameraDesk&)
{
    QProcess second;
    second.start(QStringLiteral(MARVIK_PROGRAM), QStringList());
    return QTest::qWaitFor([&second] { return second.state() == QProcess::NotRunning; },
                           kSecondStartMs) &&
           second.exitCode() == 0;
}

} // namespace

Q_DECLARE_METATYPE(Step)

/// The camera while nobody can see its picture.
class SettingsHiddenTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void cameraIsOffWhileTheWindowIsHidden_data();
    void cameraIsOffWhileTheWindowIsHidden();
    void pictureThatWasOffStaysOff();
    void editsStayAndWorkAfterwards();
    void editsAreDiscardedByQuit();
    void cameraThatIsTakenMeanwhileGivesTheToast();
    void cameraThatLeavesMeanwhileLeadsToTheList();
    void pictureDoesNotStartInAHiddenWindow();

private:
    [[nodiscard]] bool isOff()
    {
        return !m_camera->stats().streaming && m_camera->handles().video == 0;
    }
    [[nodiscard]] TransPrewBtn* button() const { return m_desk->find<TransPrewBtn>(); }
    [[nodiscard]] bool hide(const Step& step);
    [[nodiscard]] bool restore(const Step& step);

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsHiddenTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", "SVAA009500551"}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->startWith(*m_camera));
    QVERIFY(m_camera->waitFor("frames>=2"));
    auto* application = qobject_cast<QtSingleApplication*>(qApp);
    application->setActivationWindow(&m_desk->window(), true);
    connect(application, &QtSingleApplication::messageReceived, &m_desk->window(),
            &SorvantaHome::slotActivateWindow);
}

void SettingsHiddenTest::cleanup()
{
    qobject_cast<QtSingleApplication*>(qApp)->setActivationWindow(nullptr);
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

/// Whether the camera is off in time. The time begins when the window is hidden or minimised.
bool SettingsHiddenTest::hide(const Step& step)
{
    const SorvantaHome& window = m_desk->window();
    if (!step(*m_desk) ||
        !QTest::qWaitFor([&window] { return window.isHidden() || window.isMinimized(); }))
        return false;
    return QTest::qWaitFor([this] { return isOff(); }, kCameraOffMs);
}

bool SettingsHiddenTest::restore(const Step& step)
{
    const SorvantaHome& window = m_desk->window();
    // Restored before the window manager has minimised it, the window would still be minimised.
    return QTest::qWaitFor([&window] { return !OnScreen::isShown(window); }) && step(*m_desk) &&
           QTest::qWaitFor([&window] {
               return window.isVisible() && !window.isMinimized() && OnScreen::isShown(window);
           });
}

void SettingsHiddenTest::cameraIsOffWhileTheWindowIsHidden_data()
{
    QTest::addColumn<Step>("hiding");
    QTest::addColumn<Step>("restoring");
    QTest::newRow("button, task bar") << Step(minimizeByButton) << Step(activateInTheTaskBar);
    QTest::newRow("task bar") << Step(minimizeInTheTaskBar) << Step(activateInTheTaskBar);
    QTest::newRow("button, second start") << Step(minimizeByButton) << Step(startAgain);
    QTest::newRow("close, tray") << Step(closeToTray) << Step(clickInTheTray);
    QTest::newRow("close, second start") << Step(closeToTray) << Step(startAgain);
    QTest::newRow("quit, tray") << Step(quitInTheMenu) << Step(clickInTheTray);
    QTest::newRow("quit, second start") << Step(quitInTheMenu) << Step(startAgain);
}

void SettingsHiddenTest::cameraIsOffWhileTheWindowIsHidden()
{
    QFETCH(const Step, hiding);
    QFETCH(const Step, restoring);
    m_camera->forgetRequests();
    QVERIFY(hide(hiding));
    QVERIFY(restore(restoring));
    QTRY_VERIFY(m_camera->stats().streaming);
    QTRY_VERIFY(button()->isVisible() && m_desk->find<TransparentBtn>()->isVisible());
    QVERIFY(button()->isPreviewOpen());
    QVERIFY(m_desk->settle());
    QCOMPARE(m_desk->toast(), QString());
    QCOMPARE(writesTo(*m_camera).join(","), QString());
    // The camera is off a second time as well.
    QVERIFY(hide(hiding));
}

void SettingsHiddenTest::pictureThatWasOffStaysOff()
{
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_desk->settle());
    QVERIFY(hide(closeToTray));
    QVERIFY(restore(clickInTheTray));
    QTRY_VERIFY(button()->isVisible());
    QVERIFY(!button()->isPreviewOpen());
    QVERIFY(!m_camera->stats().streaming);
    QVERIFY(m_desk->setSlider("brightSlider", 90));
    QCOMPARE(m_camera->value("brightness"), 90);
}

void SettingsHiddenTest::editsStayAndWorkAfterwards()
{
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(hide(minimizeByButton));
    QVERIFY(restore(activateInTheTaskBar));
    QTRY_VERIFY(m_camera->stats().streaming);
    QCOMPARE(pictureOf(*m_camera), (QList<int>{130, 128, 140, 120}));
    QCOMPARE(m_camera->value("CameraView"), 60);
    QVERIFY(m_desk->click("btnBrightMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->discard());
    QCOMPARE(pictureOf(*m_camera), (QList<int>{128, 128, 128, 128}));
    QCOMPARE(m_camera->value("CameraView"), 120);
}

void SettingsHiddenTest::editsAreDiscardedByQuit()
{
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->save());
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(hide(quitInTheMenu));
    QVERIFY(restore(clickInTheTray));
    QTRY_COMPARE(pictureOf(*m_camera), (QList<int>{130, 128, 140, 120}));
    QTRY_COMPARE(m_desk->sliderValues(), pictureOf(*m_camera));
}

void SettingsHiddenTest::cameraThatIsTakenMeanwhileGivesTheToast()
{
    QVERIFY(hide(closeToTray));
    m_camera->fault("busy");
    QVERIFY(restore(clickInTheTray));
    QTRY_COMPARE(m_desk->toast(), kInUse);
    QVERIFY(!button()->isPreviewOpen());
    QVERIFY(button()->isVisible());
    QVERIFY(!m_camera->stats().streaming);
    m_camera->clearFaults();
    QVERIFY(m_desk->clickPreview());
    QTRY_VERIFY(m_camera->stats().streaming);
}

void SettingsHiddenTest::cameraThatLeavesMeanwhileLeadsToTheList()
{
    QVERIFY(hide(minimizeByButton));
    m_camera->unplug();
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(restore(activateInTheTaskBar));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->toast(), QString());
    QVERIFY(!button()->isVisible());
}

void SettingsHiddenTest::pictureDoesNotStartInAHiddenWindow()
{
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->clickCard(*m_camera));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(hide(closeToTray));
    QVERIFY(m_desk->settle());
    QVERIFY(isOff());
    QVERIFY(restore(clickInTheTray));
    QTRY_VERIFY(m_camera->stats().streaming);
    QVERIFY(m_desk->isChecked("btn120"));
}

int main(int argc, char** argv)
{
    QtSingleApplication application(argc, argv, true);
    if (application.isRunning())
        return 1;
    SettingsHiddenTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SettingsHiddenTest.moc"
