#pragma once

#include "CameraBench.h"
#include "DeviceWidgetInfo.h"
#include "SorvantaHome.h"
#include "SvtaPagesView.h"

#include <QString>
#include <QWidget>

/// The main window on the screen, with scripted cameras and the pointer out of its way.
class ShownHome
{
public:
    static constexpr int kStartAnimationMs = 2800;
    static constexpr int kBackLockMs = 1000;
    static constexpr int kPreviewDelayMs = 100;

    /// The window shows the start animation.
    explicit ShownHome(int cameras = 0);
    ~ShownHome();
    ShownHome(const ShownHome&) = delete;
    ShownHome& operator=(const ShownHome&) = delete;

    /// Ends the start animation before its time; the list is up afterwards.
    [[nodiscard]] bool passStart();
    /// Opens the settings of @p camera, whatever was shown, and lets its preview start.
    [[nodiscard]] bool openSettings(const DeviceWidgetInfo& camera = connectedCamera());
    /// Closes the window by its button, into the tray, and waits until its focus is gone, which Qt
    /// notices late: a window that comes back before is not told that it is active again.
    void closeToTray() const;
    static void waitForLossOfFocus();
    /// Ends the time in which the back button is locked.
    [[nodiscard]] bool passBackLock();

    [[nodiscard]] SorvantaHome& window() { return m_window; }
    [[nodiscard]] CameraBench& bench() { return m_bench; }
    [[nodiscard]] int page() const;

    /// The one child of this class or this name.
    template <typename Widget = QWidget>
    [[nodiscard]] Widget* find(const char* name = nullptr) const
    {
        auto* widget = m_window.findChild<Widget*>(QLatin1String(name));
        if (!widget)
            qFatal("no %s %s", Widget::staticMetaObject.className(), name ? name : "");
        return widget;
    }
    /// The text of the toast that is up; empty when none is.
    [[nodiscard]] QString toast() const;
    /// Clicks the button @p name.
    void click(const char* name) const;

    /// Whether the window has the place on the screen that it was given.
    [[nodiscard]] bool isPlaced() const { return m_placed; }

    static DeviceWidgetInfo connectedCamera();
    static DeviceWidgetInfo failedCamera();

private:
    CameraBench m_bench;
    SorvantaHome m_window;
    bool m_placed = false;
};
