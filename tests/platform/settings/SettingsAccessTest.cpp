#include "CameraDesk.h"
#include "DeviceManager.h"
#include "ParamSettingsPage.h"
#include "PendingTimers.h"
#include "Pointer.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaDeviceWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "TransparentBtn.h"
#include "TransPrewBtn.h"

#include <memory>
#include <QAbstractButton>
#include <QAccessible>
#include <QToolTip>
#include <QtTest>
#include <QWindow>

using Pages = SvtaPagesView;

namespace {

const char* const kSerial = "SVAA009500551";
constexpr int kMostControls = 30;
constexpr int kPreviewDelayMs = 100;
constexpr int kDebounceMs = 800;

/// Sends a key through the window system: the widget with the focus receives it.
void press(QWidget* window, Qt::Key key)
{
    QTest::keyClick(window->windowHandle(), key);
}

QString focusName()
{
    const QWidget* widget = QApplication::focusWidget();
    return widget ? widget->objectName() : QString();
}

bool tabTo(QWidget* window, const char* name)
{
    for (int i = 0; i < kMostControls && focusName() != QLatin1String(name); ++i)
        press(window, Qt::Key_Tab);
    return focusName() == QLatin1String(name);
}

} // namespace

/// The settings page for users who cannot use a mouse or use a screen reader, and the explanations
/// of disabled controls.
class SettingsAccessTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keysAloneChangeTheFeatures();
    void keysAloneChangeAndSaveThePicture();
    void keysWorkAfterAClick();
    void keysAloneAnswerTheQuestionForTheDefaults();
    void everyControlHasAName();
    void lockedSwitchHasAnExplanation();
    void disabledViewHasAnExplanation();
    void cameraThatCannotBeOpenedHasAnExplanation();
    void cameraThatMayNotBeOpenedHasAnExplanation();

private:
    [[nodiscard]] bool tabTo(const char* name) { return ::tabTo(&m_desk->window(), name); }
    void press(Qt::Key key) { ::press(&m_desk->window(), key); }
    /// The tool tip that the desktop shows for the widget.
    [[nodiscard]] static QString toolTipOf(const QWidget* widget)
    {
        Pointer::moveTo(Pointer::middleOf(*widget));
        Pointer::moveTo(Pointer::middleOf(*widget) + QPoint(1, 0));
        return QTest::qWaitFor([] { return QToolTip::isVisible(); }) ? QToolTip::text() : QString();
    }

    /// The tool tip without the desktop's delay, for a control that is disabled only briefly.
    [[nodiscard]] QString shownToolTipOf(const char* name) const
    {
        QWidget* widget = m_desk->find(name);
        const QPoint middle = widget->rect().center();
        QHelpEvent rest(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
        QApplication::sendEvent(widget, &rest);
        return QToolTip::text();
    }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsAccessTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", kSerial}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
}

void SettingsAccessTest::cleanup()
{
    QToolTip::hideText();
    Pointer::park();
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsAccessTest::keysAloneChangeTheFeatures()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(tabTo("btn120"));
    press(Qt::Key_Left);
    QCOMPARE(m_camera->value("CameraView"), 90);

    QVERIFY(tabTo("btnIntelligent"));
    press(Qt::Key_Space);
    QVERIFY(m_desk->settle());
    QCOMPARE(m_camera->value("CameraView"), 120);
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);

    QVERIFY(tabTo("rbtnPersonalTrack"));
    press(Qt::Key_Right);
    QCOMPARE(m_camera->value("autoFrameMode"), 1);
    QVERIFY(tabTo("rbtnAutoFraming"));
    press(Qt::Key_Down);
    QVERIFY(m_desk->settle());
    QCOMPARE(m_camera->value("frameMaster"), 1);
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);

    QVERIFY(tabTo("btnHorizontalMirror"));
    press(Qt::Key_Space);
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QVERIFY(tabTo("btnMiddle"));
    press(Qt::Key_Right);
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
}

void SettingsAccessTest::keysAloneChangeAndSaveThePicture()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(tabTo("btnFeatureSetting"));
    press(Qt::Key_Right);
    QVERIFY(tabTo("btnStandardMode"));
    press(Qt::Key_Right);
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
    QVERIFY(tabTo("brightSlider"));
    press(Qt::Key_Right);
    QVERIFY(tabTo("sharpnessSlider"));
    press(Qt::Key_Home);
    QCOMPARE(pictureOf(*m_camera), (QList<int>{139, 128, 130, 78}));
    QVERIFY(m_desk->isChecked("btnCustomMode"));

    QVERIFY(tabTo("btnPramaSava"));
    press(Qt::Key_Space);
    auto* dialog = m_desk->find<SvtaParamSaveDialog>();
    QTRY_COMPARE(QApplication::activeWindow(), dialog);
    QVERIFY(::tabTo(dialog, "btnConfirm"));
    ::press(dialog, Qt::Key_Space);
    QCOMPARE(m_desk->toast(), QStringLiteral("Successfully saved"));
    QCOMPARE(m_saved->group(QLatin1String(kSerial)), (QMap<QString, int>{{"bright", 139},
                                                                         {"contrast", 128},
                                                                         {"saturation", 130},
                                                                         {"sharpness", 78},
                                                                         {"imagemode", 3}}));
}

void SettingsAccessTest::keysWorkAfterAClick()
{
    QVERIFY(m_desk->open(*m_camera));
    for (const char* clicked :
         {"btnCameraSetting", "btnVividMode", "btnFeatureSetting", "btnHeigh"}) {
        QVERIFY(m_desk->click(clicked));
        press(Qt::Key_Tab);
        QCOMPARE(focusName(),
                 QLatin1String(m_desk->isChecked("btnFeatureSetting") ? "btnFeatureSetting"
                                                                      : "btnCameraSetting"));
    }
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("btnIntelligent"));
}

void SettingsAccessTest::keysAloneAnswerTheQuestionForTheDefaults()
{
    m_camera->setValue("brightness", 150);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnCameraSetting"));
    QVERIFY(tabTo("btnPramaReset"));
    press(Qt::Key_Space);
    auto* dialog = m_desk->find<SvtaParamResetDialog>();
    QTRY_COMPARE(QApplication::activeWindow(), dialog);
    QVERIFY(::tabTo(dialog, "btnCancel"));
    ::press(dialog, Qt::Key_Space);
    QVERIFY(!dialog->isVisible());
    QCOMPARE(m_camera->value("brightness"), 150);
    QTRY_COMPARE(QApplication::activeWindow(), &m_desk->window());
    QCOMPARE(focusName(), QStringLiteral("btnPramaReset"));
}

void SettingsAccessTest::everyControlHasAName()
{
    QVERIFY(m_desk->open(*m_camera));
    int count = 0;
    for (QWidget* part : std::initializer_list<QWidget*>{
             m_desk->find<ParamSettingsPage>(), m_desk->find<SvtaParamSaveDialog>(),
             m_desk->find<SvtaParamResetDialog>(), m_desk->find<SvtaParamNotSaveDialog>(),
             m_desk->find<SvtaCenterTipDialog>(), m_desk->find("backWidget"),
             m_desk->find("titleWidget")}) {
        for (QWidget* widget : part->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus && !qobject_cast<QAbstractButton*>(widget))
                continue;
            ++count;
            const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
            QVERIFY2(!face->text(QAccessible::Name).isEmpty(), qPrintable(widget->objectName()));
        }
    }
    QVERIFY(count > 25);
    // The buttons over the picture are separate windows.
    QCOMPARE(m_desk->find<TransPrewBtn>()->accessibleName(), QStringLiteral("Preview"));
    QCOMPARE(m_desk->find<TransparentBtn>()->accessibleName(), QStringLiteral("Grid"));
}

void SettingsAccessTest::lockedSwitchHasAnExplanation()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnIntelligent"));
    QVERIFY(!m_desk->find("btnIntelligent")->isEnabled());
    QCOMPARE(shownToolTipOf("btnIntelligent"),
             QStringLiteral("The camera is switching. Available again in a second."));
}

void SettingsAccessTest::disabledViewHasAnExplanation()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->switchIntelligent());
    m_desk->unlockIntelligent();
    QVERIFY(!m_desk->find("btn90")->isEnabled());
    QVERIFY(
        m_desk->click("rbtnFrameMaster")); // a shorter card, so that the view needs no scrolling
    QCOMPARE(toolTipOf(m_desk->find("btn90")),
             QStringLiteral("Turn Stage follow® AI off to change the field of view."));
}

void SettingsAccessTest::cameraThatCannotBeOpenedHasAnExplanation()
{
    // The list does not know that the camera was unplugged: its watch is off.
    DeviceManager::instance().stop();
    auto* card = m_desk->find<SvtaDeviceWidget>();
    m_camera->unplug();
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, QPoint(card->width() / 2, 20));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(PendingTimers::fire(kPreviewDelayMs));
    QVERIFY(!m_desk->find("btnHorizontalMirror")->isEnabled());
    QVERIFY(!m_desk->find("brightSlider")->isEnabled());
    QCOMPARE(shownToolTipOf("btnHorizontalMirror"),
             QStringLiteral("The camera was unplugged. Plug it in again."));
    QCOMPARE(m_desk->text("previewReason"), m_desk->find("stackedWidget")->toolTip());
    QVERIFY(m_desk->find("previewReason")->isVisible());

    m_camera->plug();
    DeviceManager::instance().start();
    m_desk->unlockBack();
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->find("stackedWidget")->toolTip().isEmpty());
    QVERIFY(!m_desk->find("previewReason")->isVisible());
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
}

void SettingsAccessTest::cameraThatMayNotBeOpenedHasAnExplanation()
{
    m_camera->fault("denied");
    auto* card = m_desk->find<SvtaDeviceWidget>();
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, QPoint(card->width() / 2, 20));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(PendingTimers::fire(kPreviewDelayMs));
    QVERIFY(!m_desk->find("btnHorizontalMirror")->isEnabled());
    const QString reason =
        QStringLiteral("You have no permission to open the camera. Install the program's udev "
                       "rule, or join the group \"video\" and log in again.");
    QCOMPARE(shownToolTipOf("btnHorizontalMirror"), reason);
    QCOMPARE(m_desk->text("previewReason"), reason);
    QVERIFY(m_desk->find("previewReason")->isVisible());

    // A click on the preview button tells it too, and works when there is permission.
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_desk->find("previewReason")->isVisible());
    m_camera->clearFaults();
    PendingTimers::fire(kDebounceMs);
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_camera->waitFor("streaming"));
    QVERIFY(!m_desk->find("previewReason")->isVisible());
}

QTEST_MAIN(SettingsAccessTest)
#include "SettingsAccessTest.moc"
