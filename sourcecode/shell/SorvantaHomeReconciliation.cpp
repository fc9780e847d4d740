#include "CameraHandle.h"
#include "FirmwareTransfer.h"
#include "IDeviceNotify.h"
#include "LoadingDialog.h"
#include "ReportedText.h"
#include "SorvantaHome.h"
#include "SupportedCameras.h"
#include "SvtaMessageDialog.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "TransPrewBtn.h"
#include "UVCCamera.h"

#include <QDebug>
#include <QTimer>

namespace {

constexpr int kLeaveDelayMs = 20;

/// The control interfaces of supported cameras among @p devices, in key order.
QList<HidDevices> supportedInterfaces(const QMap<QString, HidDevices>& devices, const char* label)
{
    QList<HidDevices> result;
    for (const HidDevices& device : devices) {
        qDebug() << label << device.path;
        if (SupportedCameras::isCameraInterface(device))
            result.append(device);
    }
    return result;
}

} // namespace

void SorvantaHome::slotUpdateCameraListFinished(const QList<UVCDeviceInfo>& camera,
                                                const QList<UVCDeviceInfo>& oldCameras,
                                                const QMap<QString, HidDevices>& deviceHidMaps,
                                                const QMap<QString, HidDevices>& oldDeviceHidMaps,
                                                int status)
{
    Q_UNUSED(camera)
    Q_UNUSED(oldCameras)
    if (!deviceHidMaps.contains(m_transfer->busyHidPath()))
        m_transfer->cameraLeft();
    const QList<HidDevices> present =
        supportedInterfaces(deviceHidMaps, "In Loop deviceHidMaps curHidDevice path =");
    const QList<HidDevices> before =
        supportedInterfaces(oldDeviceHidMaps, "In Loop oldDeviceHidMaps curHidDevice path =");
    if (present.size() == before.size())
        return; // the change did not concern a supported camera

    const HidDevices curHidDevice = present.isEmpty() ? HidDevices() : present.last();
    qDebug() << "curHidDevice.path =" << curHidDevice.path;
    qDebug() << "mDeviceWidgetInfo.hidPath =" << mDeviceWidgetInfo.hidPath;
    qDebug() << "SorvantaHome::slotUpdateCameraListFinished" << __LINE__
             << "当前页 =" << currentPage() << "当前热插拔状态 =" << status;
    const bool isContainsCurDev = deviceHidMaps.contains(mDeviceWidgetInfo.hidPath);
    qDebug() << "isContainsCurDev" << isContainsCurDev;

    if (status == DeviceRemoved && !isContainsCurDev) {
        qDebug() << "拔出设备，不包含mDeviceWidgetInfo.hidPath";
        m_parametersLoaded = false;
        // While firmware is installed the camera leaves the bus to start it; its pages stay.
        if (!m_loadingDialog->isVisible())
            leaveAfterRemoval();
        return;
    }
    // A camera that is still being written cannot be the one that has returned.
    if (currentPage() == SvtaPagesView::InfoPage && status == DevicePluggedIn &&
        !isBusy(curHidDevice.path))
        verifyReturningCamera(curHidDevice);
}

void SorvantaHome::leaveAfterRemoval()
{
    QTimer::singleShot(kLeaveDelayMs, this, [this] {
        showView(SvtaPagesView::HomePage);
        for (QDialog* dialog : std::initializer_list<QDialog*>{m_notSaveDialog, m_resetDialog,
                                                               m_saveDialog, m_updateDialog}) {
            if (!dialog->isVisible())
                continue;
            // Nobody wants the firmware of a camera that is gone.
            if (dialog == m_updateDialog &&
                m_updateDialog->currentPage() == SvtaVersionUpdateDialog::DownloadPage)
                m_updateDialog->slotStopUpdate();
            dialog->hide();
            break;
        }
    });
    m_previewBtn->setPreviewOpen(false);
    m_pCamera->closeHid();
}

/// A camera was plugged in while the information page is open: the one that is being updated, or
/// another one.
void SorvantaHome::verifyReturningCamera(const HidDevices& device)
{
    m_pCamera->setCurrentDevicePath(device.path);
    m_pCamera->initHid();
    const QString version = reportedText(m_pCamera->getFirmwareVersion());
    const QString sn = reportedText(m_pCamera->getSerialNumber());
    const bool loading = m_loadingDialog->isVisible();
    qDebug() << "插入设备，在设备详情页";
    qDebug() << "mDeviceWidgetInfo.deviceVersion =" << mDeviceWidgetInfo.deviceVersion << version;
    qDebug() << "mDeviceWidgetInfo.sn =" << mDeviceWidgetInfo.sn;
    qDebug() << "sn =" << sn;
    qDebug() << "loading页状态 =" << loading;
    if (sn != mDeviceWidgetInfo.sn || !loading) {
        if (device.path != mDeviceWidgetInfo.hidPath)
            returnToOpenCamera();
        return;
    }

    qDebug() << "插入的设备是更新的设备，并且loading页显示";
    takeOverNames(device.path);
    const bool connected = UVCHid::getCameraConnectionStatus(device.path.toUtf8().constData(),
                                                             device.vendorId, device.productId);
    mDeviceWidgetInfo.status = connected ? 1 : 0;
    qDebug() << "hid_status" << connected;
    m_updateTimer->stop();
    if (!connected) {
        qDebug() << "当前设备状态Failed，更新失败";
        showUpdateFailed();
        return;
    }
    qDebug() << "更新设备状态Connected";
    if (version == mDeviceWidgetInfo.deviceVersion) {
        qDebug() << "版本号相同，更新失败";
        showUpdateFailed();
        return;
    }
    qDebug() << "版本号不同，更新完成";
    showView(SvtaPagesView::HomePage);
    m_loadingDialog->hide();
    showToast(tr("Update Complete"));
}

/// Another camera was asked who it is. What the user sets from here on is for the one whose pages
/// are open.
void SorvantaHome::returnToOpenCamera()
{
    if (isBusy(mDeviceWidgetInfo.hidPath))
        m_pCamera->closeHid();
    else
        openHidLink();
}

/// The open camera is back, perhaps under other names: a second attempt and its settings go there.
void SorvantaHome::takeOverNames(const QString& hidPath)
{
    mDeviceWidgetInfo.hidPath = hidPath;
    for (const DeviceWidgetInfo& info : qAsConst(m_deviceWidgets)) {
        if (info.hidPath == hidPath)
            mDeviceWidgetInfo.path = info.path;
    }
    CameraHandle::instance().setCurrentDevice(mDeviceWidgetInfo);
}

void SorvantaHome::showUpdateFailed()
{
    m_loadingDialog->hide();
    m_messageDialog->setMessage(tr("Updating failed. Please try again."), tr("Retry"), tr("Later"),
                                false);
    m_updateDialog->hide();
    showMasked(m_messageDialog);
}
