#pragma once

#include <memory>
#include <QObject>
#include <QPoint>

class QWidget;
class TransparentBtn;
class TransparentWidget;
class TransPrewBtn;

/// The windows over the preview: the grid of guide lines and the buttons for grid and preview. They
/// move with the main window.
class PreviewOverlays : public QObject
{
    Q_OBJECT

public:
    /// Hidden at first. @p window is their parent: without one, a window manager may put them
    /// behind it.
    explicit PreviewOverlays(QWidget* window);
    /// Destroys the windows.
    ~PreviewOverlays() override;

    [[nodiscard]] TransparentBtn* gridButton() const { return m_gridBtn.get(); }
    [[nodiscard]] TransPrewBtn* previewButton() const { return m_previewBtn.get(); }

    /// Whether the preview is on, or is to be started with the settings page.
    [[nodiscard]] bool isPreviewOpen() const;
    void setPreviewOpen(bool open);

    /// Moves all windows to their places over a main window at @p origin (on the screen).
    void place(const QPoint& origin);
    /// Hides all windows. Does not switch the grid off.
    void hide();
    /// Places the windows and shows those that the settings page needs now.
    void restore(const QPoint& origin);
    /// Sets the buttons to a preview that runs or does not, and shows those that it needs.
    void showRunning(bool running);
    /// The same without showing one: the window may be hidden.
    void setRunning(bool running);

    /// Shows the grid, if it is switched on.
    void showGrid();
    /// Switches the grid on or off.
    void toggleGrid();
    void switchGridOff();
    /// Hides the buttons.
    void hideButtons();

private:
    void setGridVisible(bool visible);

    std::unique_ptr<TransparentWidget> m_grid;
    std::unique_ptr<TransparentBtn> m_gridBtn;
    std::unique_ptr<TransPrewBtn> m_previewBtn;
    bool m_gridOn = false; ///< switched on, even while the settings page is not shown
};
