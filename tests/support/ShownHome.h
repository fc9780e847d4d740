#pragma once

#include "DeviceWidgetInfo.h"
#include "ScriptedCameras.h"
#include "SorvantaHome.h"
#include "SvtaPagesView.h"

#include <QString>
#include <QWidget>

/// The main window on the screen, with scripted cameras and the pointer outside of it.
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

    /// Ends the start animation early; the list is shown afterwards.
    [[nodiscard]] bool passStart() const;
    /// Opens the settings of @p camera from any page, and lets its preview start.
    [[nodiscard]] bool openSettings(const DeviceWidgetInfo& camera = connectedCamera());
    /// Closes the window into the tray by its button, and waits until Qt has noticed that it lost
    /// the focus: a window that is restored earlier gets no activation event.
    void closeToTray() const;
    static void waitForLossOfFocus();
    /// Ends the lock of the back button.
    [[nodiscard]] bool passBackLock() const;

    [[nodiscard]] SorvantaHome& window() { return m_window; }
    [[nodiscard]] ScriptedCameras& cameras() { return m_cameras; }
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
    /// The text of the visible toast; empty when there is none.
    [[nodiscard]] QString toast() const;
    /// Clicks the button @p name.
    void click(const char* name) const;

    /// Whether the window is at its requested position on the screen.
    [[nodiscard]] bool isPlaced() const { return m_placed; }

    static DeviceWidgetInfo connectedCamera();
    static DeviceWidgetInfo failedCamera();

private:
    ScriptedCameras m_cameras;
    SorvantaHome m_window;
    bool m_placed = false;
};
