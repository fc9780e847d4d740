#pragma once

#include <QObject>
#include <QString>

class CameraSettings;
class OpenCamera;
class ParamSettingsPage;
class PreviewOverlays;

/// Starts and stops the live picture of the open camera on the settings page, and fills the page
/// when the picture is there. GUI thread.
class PreviewControl : public QObject
{
    Q_OBJECT

public:
    PreviewControl(OpenCamera& camera, ParamSettingsPage& page, PreviewOverlays& overlays,
                   CameraSettings& settings, QObject* parent = nullptr);

    /// Opens the video device, starts the preview if the preview button is on, and fills the page.
    /// @param isBusy firmware is being written into the camera, which must not get other commands
    void startPlay(bool isBusy);
    /// For a press of the preview button: stops the preview if it runs, otherwise starts it. Fills
    /// the page if the camera could not be opened before.
    /// @param isBusy as for startPlay()
    void toggle(bool isBusy);

    /// Stops the picture and closes the video device, because the window is not visible: the camera
    /// is off, and other programs can use it. A start during this time is deferred until resume().
    void suspend();
    /// The window is visible again: opens the video device and starts the picture, if they were
    /// open and running at suspend(). Writes no setting to the camera.
    /// @param isBusy as for startPlay()
    void resume(bool isBusy);
    /// The preview area has got another size in pixels.
    void fit();

signals:
    void sigShowToast(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void captureFailed();

private:
    bool openDevice();
    void reopen();
    void start();
    void refreshStreamLater();
    void showValues();
    void showNotOpened();
    [[nodiscard]] QString reason() const;
    void showRunning(bool running, const QString& reason = {});
    void setPageRunning(bool running, const QString& reason);

    OpenCamera& m_camera;
    ParamSettingsPage& m_page;
    PreviewOverlays& m_overlays;
    CameraSettings& m_settings;
    bool m_suspended = false;
    bool m_wasOpened = false;     ///< when it was suspended
    bool m_playIsWaiting = false; ///< startPlay() was called since
};
