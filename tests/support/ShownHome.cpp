#include "ShownHome.h"

#include "PendingTimers.h"
#include "Pointer.h"
#include "ToastDialog.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QtTest>

namespace {

constexpr QPoint kPlace(400, 160);
constexpr int kAttempts = 5;
constexpr int kAttemptMs = 2000;

} // namespace

ShownHome::ShownHome(int cameras)
    : m_cameras(cameras)
{
    Pointer::park();
    m_window.setWindowTitle(QStringLiteral("MarvikTools"));
    m_window.move(kPlace);
    m_window.show();
    // Destroying the previously active window may deactivate this one.
    bool active = false;
    for (int attempt = 0; attempt < kAttempts && !active; ++attempt) {
        m_window.activateWindow();
        active = QTest::qWaitForWindowActive(&m_window, kAttemptMs);
    }
    m_placed = active && QTest::qWaitFor([this] { return m_window.pos() == kPlace; });
}

ShownHome::~ShownHome()
{
    PendingTimers::dropAll();
}

bool ShownHome::passStart() const
{
    return PendingTimers::fire(kStartAnimationMs) && page() == SvtaPagesView::HomePage;
}

bool ShownHome::openSettings(const DeviceWidgetInfo& camera)
{
    PendingTimers::drop(kStartAnimationMs); // when it expires, it shows the list
    m_window.showDeviceSettingPages(camera);
    return PendingTimers::fire(kPreviewDelayMs) && page() == SvtaPagesView::SettingPage;
}

bool ShownHome::passBackLock() const
{
    return PendingTimers::fire(kBackLockMs) && find<QPushButton>("backBtn")->isEnabled();
}

void ShownHome::closeToTray() const
{
    click("closeBtn");
    waitForLossOfFocus();
}

void ShownHome::waitForLossOfFocus()
{
    if (!QTest::qWaitFor([] { return !QGuiApplication::focusWindow(); }))
        qWarning("the focus stays");
}

int ShownHome::page() const
{
    return find<QStackedWidget>("homeStackedWidget")->currentIndex();
}

QString ShownHome::toast() const
{
    const auto toasts = m_window.findChildren<ToastDialog*>();
    for (const ToastDialog* each : toasts) {
        if (each->isVisible())
            return each->findChild<QLabel*>(QStringLiteral("ContentLab"))->text();
    }
    return {};
}

void ShownHome::click(const char* name) const
{
    QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
}

DeviceWidgetInfo ShownHome::connectedCamera()
{
    DeviceWidgetInfo camera;
    camera.status = 1;
    camera.name = QStringLiteral("NOVA EDGE");
    camera.model = QStringLiteral("RQ-T47K");
    camera.path = ScriptedCameras::videoPath(0);
    camera.hidPath = ScriptedCameras::hidPath(0);
    return camera;
}

DeviceWidgetInfo ShownHome::failedCamera()
{
    DeviceWidgetInfo camera = connectedCamera();
    camera.status = 0;
    return camera;
}
