#pragma once

#include "PluggedCamera.h"
#include "SavedSettings.h"
#include "SorvantaHome.h"
#include "SvtaPagesView.h"

#include <QDialog>
#include <QLabel>
#include <QPoint>
#include <QPushButton>
#include <QSlider>
#include <QString>
#include <QStringList>

class SvtaDeviceWidget;

/// The program's main window with virtual cameras and the hot-plug watcher. It is used as by a
/// user: a control is scrolled into view first, and must not be covered by a dialog.
///
/// Functions that can fail return whether they succeeded and log the reason of a failure.
class CameraDesk
{
public:
    CameraDesk();
    ~CameraDesk();
    CameraDesk(const CameraDesk&) = delete;
    CameraDesk& operator=(const CameraDesk&) = delete;

    /// Shows the list with the cameras that are plugged in.
    [[nodiscard]] bool start();
    /// start(), then open().
    [[nodiscard]] bool startWith(PluggedCamera& camera) { return start() && open(camera); }

    [[nodiscard]] SorvantaHome& window() { return m_window; }
    [[nodiscard]] int page() const;
    [[nodiscard]] bool isOnPage(SvtaPagesView::ViewPageEnum page) const;

    /// The one child of this class or this name.
    template <typename Widget = QWidget>
    [[nodiscard]] Widget* find(const char* name = nullptr) const
    {
        auto* widget = m_window.findChild<Widget*>(QString::fromLatin1(name));
        if (!widget)
            qFatal("no %s %s", Widget::staticMetaObject.className(), name ? name : "");
        return widget;
    }

    /// @name The list
    /// @{
    [[nodiscard]] int cardCount() const;
    /// Null when the camera is not in the list.
    [[nodiscard]] SvtaDeviceWidget* card(PluggedCamera& camera) const;
    [[nodiscard]] bool waitForCards(int count);
    /// Unplugs the camera and plugs it in again; waits until the list has noticed both.
    [[nodiscard]] bool replug(PluggedCamera& camera);
    /// Clicks the camera's card and waits until its settings are shown.
    [[nodiscard]] bool open(PluggedCamera& camera);
    /// Clicks the camera's card.
    [[nodiscard]] bool clickCard(PluggedCamera& camera);
    /// @}

    /// @name The settings page
    /// @{
    [[nodiscard]] bool click(const char* name, Qt::MouseButton button = Qt::LeftButton);
    [[nodiscard]] bool clickSlider(const char* name, int x);
    /// Clicks where the slider has this value.
    [[nodiscard]] bool setSlider(const char* name, int value);
    /// Drags the handle to the position of @p value.
    [[nodiscard]] bool dragSlider(const char* name, int value);
    [[nodiscard]] bool turnWheel(const char* name, int notches);
    [[nodiscard]] bool pressKey(const char* name, Qt::Key key);
    /// Clicks the button that switches the preview.
    [[nodiscard]] bool clickPreview();
    /// Waits until every deferred step has been executed.
    [[nodiscard]] bool settle();
    /// click(), then settle().
    [[nodiscard]] bool choose(const char* name) { return click(name) && settle(); }
    /// Ends the lock of the intelligent switch, and clicks it.
    [[nodiscard]] bool switchIntelligent();
    void unlockIntelligent() const;

    [[nodiscard]] bool isChecked(const char* name) const;
    [[nodiscard]] int sliderValue(const char* name) const;
    [[nodiscard]] QString text(const char* name) const;
    /// Brightness, contrast, saturation and sharpness.
    [[nodiscard]] QList<int> sliderValues() const;
    /// @}

    /// @name Leaving and dialogs
    /// @{
    /// Ends the lock of the back button, and clicks it.
    [[nodiscard]] bool back();
    void unlockBack();
    /// Clicks @p button of the dialog, which must be visible.
    template <typename Dialog>
    [[nodiscard]] bool answer(const char* button)
    {
        return clickIn(find<Dialog>(), button);
    }
    template <typename Dialog>
    [[nodiscard]] bool isUp() const
    {
        return find<Dialog>()->isVisible();
    }
    /// Clicks Save or Default and confirms.
    [[nodiscard]] bool save();
    [[nodiscard]] bool reset();
    /// Clicks the back button and answers the question with "Exit".
    [[nodiscard]] bool discard();
    /// The text of the toast; empty when there is none.
    [[nodiscard]] QString toast() const;
    [[nodiscard]] int visibleDialogs() const;
    /// @}

private:
    [[nodiscard]] bool clickIn(QDialog* dialog, const char* button);
    [[nodiscard]] bool bring(QWidget* widget, const QPoint& position);
    [[nodiscard]] bool isReachable(QWidget* widget, const QPoint& position) const;
    [[nodiscard]] bool clickOn(QWidget* widget, const QPoint& position,
                               Qt::MouseButton button = Qt::LeftButton);

    SorvantaHome m_window;
};

/// The requests to the camera since its log was last cleared: "5091=1" for a write, "5090" for a
/// read.
[[nodiscard]] QStringList requestsTo(PluggedCamera& camera);
/// Only the writes.
[[nodiscard]] QStringList writesTo(PluggedCamera& camera);
/// Brightness, contrast, saturation and sharpness in the camera.
[[nodiscard]] QList<int> pictureOf(PluggedCamera& camera);
