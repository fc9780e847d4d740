#include "ParamSettingsPage.h"
#include "SorvantaHome.h"
#include "TransparentBtn.h"
#include "TransPrewBtn.h"
#include "UVCCamera.h"

#include <QDebug>
#include <QTimer>

namespace {

constexpr int kDebounceMs = 800;
constexpr int kFollowUpMs = 100;

const char* const kPreviewOpenImage = "image: url(:/images/previewopen.svg)";
const char* const kPreviewClosedImage = "image: url(:/images/previewclose.svg)";

} // namespace

void SorvantaHome::startPlay()
{
    if (!m_pCamera)
        return;
    if (isBusy(mDeviceWidgetInfo.hidPath)) {
        m_parametersLoaded = false;
        m_valuesKnown = false;
        showPreviewRunning(false);
        m_settingsPage->setSettingsUnavailable(
            tr("The installation process will take a long time. Please wait."));
        return;
    }
    const bool opened =
        m_pCamera->openDevice(mDeviceWidgetInfo.path, m_settingsPage->previewArea()->winId());
    qDebug() << "openDevice result =" << opened;
    if (!opened) {
        qDebug() << "open Device failed!";
        showPreviewRunning(false);
        if (!m_valuesKnown)
            m_settingsPage->setSettingsUnavailable(
                tr("The camera cannot be opened. Unplug it and plug it in again."));
        return;
    }
    m_pCamera->initVideoProcAmp();

    m_pCamera->stopCapture();
    const bool running = m_previewBtn->isPreviewOpen() && m_pCamera->startCapture();
    qDebug() << "startCapture() result =" << running;
    if (!running) {
        qDebug() << "Capture failed!";
        m_pCamera->stopCapture();
    }
    showPreviewRunning(running);

    if (!m_parametersLoaded) {
        m_parametersLoaded = true;
        readIniFile();
        readDeviceParam();
        m_valuesKnown = true;
        m_settingsPage->setSettingsAvailable();
    }
    setDeviceParam();
    setAdvancedParam();

    qDebug() << "SorvantaHome::startPlay" << mDeviceWidgetInfo.hidPath;
    refresh4kState();
    if (m_4kInUse && !m_4kWasInUse && m_resolution.value(QStringLiteral("streamon")) != 0) {
        qDebug() << "4k";
        m_settingsPage->show4kNotice();
    }
}

/// Shows over and around the picture whether there is one.
void SorvantaHome::showPreviewRunning(bool running)
{
    m_previewBtn->setPreviewOpen(running);
    m_previewBtn->setLabelStyle(
        QString::fromLatin1(running ? kPreviewOpenImage : kPreviewClosedImage));
    m_settingsPage->setPreviewOpen(running);
    if (running) {
        m_gridBtn->show();
        m_gridBtn->raise();
    } else {
        clearGridMark();
        m_gridBtn->hide();
        m_settingsPage->showPreviewTip(false);
    }
    m_previewBtn->show();
    m_previewBtn->raise();
}

void SorvantaHome::slotHandleCapture()
{
    // A second click within the time that a camera takes to start or stop would undo the first.
    disconnect(m_previewBtn, &TransPrewBtn::sigHandleCapture, this,
               &SorvantaHome::slotHandleCapture);
    QTimer::singleShot(kDebounceMs, this, [this] {
        connect(m_previewBtn, &TransPrewBtn::sigHandleCapture, this,
                &SorvantaHome::slotHandleCapture, Qt::UniqueConnection);
    });

    if (m_pCamera->isRunning()) {
        m_pCamera->stopCapture();
        showPreviewRunning(false);
    } else {
        const bool opened =
            m_pCamera->openDevice(mDeviceWidgetInfo.path, m_settingsPage->previewArea()->winId());
        if (!opened)
            return;
        m_pCamera->initVideoProcAmp();
        m_pCamera->stopCapture();
        const bool running = m_pCamera->startCapture();
        if (!running)
            m_pCamera->stopCapture();
        showPreviewRunning(running);
        if (!running) {
            showToast(tr("Camera is in use by other app"));
            return;
        }
    }
    // Whether the camera streams, and at which size, has changed with the preview.
    QTimer::singleShot(kFollowUpMs, this, [this] {
        if (currentPage() == SvtaPagesView::SettingPage)
            refresh4kState();
    });
}

void SorvantaHome::slotShowPreviewTip()
{
    if (m_previewBtn->isPreviewOpen())
        m_settingsPage->showPreviewTip(true);
}

void SorvantaHome::slotHidePreviewTip()
{
    m_settingsPage->showPreviewTip(false);
}
