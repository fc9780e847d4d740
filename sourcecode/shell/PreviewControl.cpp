#include "PreviewControl.h"

#include "BusyCursor.h"
#include "CameraSettings.h"
#include "LogCategories.h"
#include "OpenCamera.h"
#include "ParamSettingsPage.h"
#include "PreviewFailureText.h"
#include "PreviewOverlays.h"
#include "UVCCamera.h"

#include <QEvent>
#include <QTimer>

namespace {

constexpr int kFollowUpMs = 100;

} // namespace

PreviewControl::PreviewControl(OpenCamera& camera, ParamSettingsPage& page,
                               PreviewOverlays& overlays, CameraSettings& settings, QObject* parent)
    : QObject(parent)
    , m_camera(camera)
    , m_page(page)
    , m_overlays(overlays)
    , m_settings(settings)
{
    connect(&camera.camera(), &UVCCamera::sigCaptureFailed, this, &PreviewControl::captureFailed);
    page.previewArea()->installEventFilter(this);
}

bool PreviewControl::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        fit();
    return QObject::eventFilter(watched, event);
}

void PreviewControl::fit()
{
    m_camera.camera().fitVideoWindow();
}

void PreviewControl::startPlay(bool isBusy)
{
    m_playIsWaiting = m_suspended;
    if (m_suspended)
        return;
    CameraSession& session = m_camera.session();
    if (isBusy) {
        const QString wait = tr("The installation process will take a long time. Please wait.");
        session.forgetParameters();
        showRunning(false, wait);
        m_page.setSettingsUnavailable(wait);
        return;
    }
    const BusyCursor busy;
    const bool opened = openDevice();
    qCDebug(videoLog) << "openDevice result =" << opened;
    if (!opened) {
        qCDebug(videoLog) << "open Device failed!";
        showNotOpened();
        return;
    }

    m_camera.camera().stopCapture();
    const bool wanted = m_overlays.isPreviewOpen();
    const bool running = wanted && m_camera.camera().startCapture();
    qCDebug(videoLog) << "startCapture() result =" << running;
    if (!running) {
        qCDebug(videoLog) << "Capture failed!";
        m_camera.camera().stopCapture();
    }
    showRunning(running, wanted && !running ? reason() : QString());

    showValues();

    qCDebug(videoLog) << "SorvantaHome::startPlay" << session.info().hidPath;
    m_settings.refresh4kState();
    if (session.is4kInUse() && !session.was4kInUse() && session.stream().streamOn != 0) {
        qCDebug(videoLog) << "4k";
        m_page.show4kNotice();
    }
}

bool PreviewControl::openDevice()
{
    UVCCamera& camera = m_camera.camera();
    if (!camera.openDevice(m_camera.session().info().path, m_page.previewArea()->winId()))
        return false;
    camera.initVideoProcAmp();
    return true;
}

/// The camera could not be opened: says why, and that its settings cannot be used.
void PreviewControl::showNotOpened()
{
    showRunning(false, reason());
    if (!m_camera.session().areValuesKnown())
        m_page.setSettingsUnavailable(reason());
}

/// Fills the page, with new values if it has none.
void PreviewControl::showValues()
{
    CameraSession& session = m_camera.session();
    if (!session.areParametersLoaded()) {
        session.loadParameters();
        m_page.setSettingsAvailable();
    }
    m_settings.setDeviceParam();
    m_settings.setAdvancedParam();
}

/// Why the camera shows no picture, after a failure.
QString PreviewControl::reason() const
{
    return PreviewFailureText::of(m_camera.camera().lastFailure());
}

/// Sets buttons and page to a preview that runs or does not.
/// @param reason why it does not; empty when the user does not want it
void PreviewControl::showRunning(bool running, const QString& reason)
{
    // The page first: Qt handles events while it shows the overlays, and the stream may end there.
    setPageRunning(running, reason);
    m_overlays.showRunning(running);
}

void PreviewControl::setPageRunning(bool running, const QString& reason)
{
    m_page.setPreviewOpen(running);
    m_page.setPreviewReason(reason);
    if (!running)
        m_page.showPreviewTip(false);
}

void PreviewControl::captureFailed()
{
    // At any time, also while the window is hidden.
    qCDebug(videoLog) << "Capture failed!";
    m_overlays.setRunning(false);
    setPageRunning(false, reason());
}

void PreviewControl::toggle(bool isBusy)
{
    UVCCamera& camera = m_camera.camera();
    if (camera.isRunning()) {
        camera.stopCapture();
        showRunning(false);
    } else {
        if (!openDevice()) {
            m_page.setPreviewReason(reason());
            return;
        }
        start();
        // The camera could not be opened before.
        if (!isBusy && !m_camera.session().areValuesKnown())
            showValues();
        if (!camera.isRunning())
            return;
    }
    refreshStreamLater();
}

/// Starts the picture of the video device that is open.
void PreviewControl::start()
{
    UVCCamera& camera = m_camera.camera();
    camera.stopCapture();
    const bool running = camera.startCapture();
    if (!running)
        camera.stopCapture();
    showRunning(running, running ? QString() : reason());
    if (!running)
        emit sigShowToast(tr("Camera is in use by other app"));
}

void PreviewControl::refreshStreamLater()
{
    // Whether the camera streams, and at which size, has changed with the preview.
    QTimer::singleShot(kFollowUpMs, &m_page, [this] {
        if (m_page.isVisibleTo(m_page.window()))
            m_settings.refresh4kState();
    });
}

void PreviewControl::suspend()
{
    if (m_suspended)
        return;
    m_suspended = true;
    m_playIsWaiting = false;
    UVCCamera& camera = m_camera.camera();
    m_wasOpened = camera.isOpened();
    if (!m_wasOpened)
        return;
    camera.stopCapture();
    camera.closeDevice();
}

void PreviewControl::resume(bool isBusy)
{
    if (!m_suspended)
        return;
    m_suspended = false;
    // The camera may have left the bus, and its page with it.
    if (!m_page.isVisibleTo(m_page.window()))
        return;
    if (m_wasOpened && !isBusy)
        reopen();
    else if (m_playIsWaiting)
        startPlay(isBusy);
}

void PreviewControl::reopen()
{
    const BusyCursor busy;
    const bool wanted = m_overlays.isPreviewOpen();
    if (!openDevice()) {
        showNotOpened();
        if (wanted)
            emit sigShowToast(tr("Camera is in use by other app"));
        return;
    }
    if (wanted) {
        start();
        refreshStreamLater();
    }
    // "Quit" forgets the values of the settings page before it hides the window.
    if (m_camera.session().areValuesKnown())
        return;
    m_camera.session().loadParameters();
    m_page.setSettingsAvailable();
    m_settings.setDeviceParam();
    m_settings.showAdvancedParam();
}
