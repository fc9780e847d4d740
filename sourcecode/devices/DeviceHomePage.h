#pragma once

#include "DeviceNotify.h"
#include "DeviceWidgetInfo.h"

#include <memory>
#include <QList>
#include <QMap>
#include <QWidget>

class MaskForm;
class QListWidget;

namespace Ui {
class DeviceHomePage;
}

/// The device list: one card for each supported camera, or the empty state.
///
/// Pairs the video devices with the HID interfaces of the same cameras, and rebuilds the list from
/// scratch whenever the hot-plug watch reports a change. GUI thread.
class DeviceHomePage : public QWidget
{
    Q_OBJECT

public:
    /// @param parent the main window; hot-plug notifications come to this page from now on
    explicit DeviceHomePage(QWidget* parent = nullptr);
    ~DeviceHomePage() override;

    /// The first enumeration.
    void start();

    /// Appends the cards of the cameras among @p cameras. Blocks for half a second first: the HID
    /// side of a camera that was just plugged in needs the time.
    void getHidCamerasAndAddToList(const QList<UVCDeviceInfo>& cameras);

    /// The camera at @p hidPath is asked nothing from now on and keeps its state in the list: its
    /// firmware is being written. Empty: no such camera.
    void setBusyCamera(const QString& hidPath) { m_busyHidPath = hidPath; }

    /// Number of cards.
    [[nodiscard]] int entryCount() const;
    /// Shows the list in the place of the empty state.
    void showFilledState();
    void showEmptyState();

public slots:
    void slotCameraItemClicked(DeviceWidgetInfo info);
    /// The hot-plug path: @p status 0 = a device was plugged in, 1 = one was removed.
    void slotUpdateCameraList(const QList<UVCDeviceInfo>& cameras, int status);

signals:
    void sigShowDevicePages(DeviceWidgetInfo Info);
    void sigShowDeviceInfo(DeviceWidgetInfo Info);
    void sigUpdateCameraListFinished(QList<UVCDeviceInfo> camera, QList<UVCDeviceInfo> oldCameras,
                                     QMap<QString, HidDevices> deviceHidMaps,
                                     QMap<QString, HidDevices> oldDeviceHidMaps, int status);
    void sigLoadingToHome();
    void sigSetDeviceWidgetMaps(QMap<QString, DeviceWidgetInfo> InfoMap);
    void sigInitCamera();
    void sigShowSupportedProduct();
    void sigSetDeviceParam(DeviceWidgetInfo Info);

private:
    /// Running numbers that pair the k-th HID interface with the k-th video device.
    struct PairingCounters
    {
        int hidCnt = 0;
        int hidCameraCnt = 0;
    };

    void addCard(const HidDevices& hidItem, bool isLastHidEntry,
                 const QList<UVCDeviceInfo>& cameras, PairingCounters& counters);
    void matchVideoDevices(const HidDevices& hidItem, const QList<UVCDeviceInfo>& cameras,
                           DeviceWidgetInfo& devWidgetInfo, PairingCounters& counters);
    void fixListHeight(int entries);

    std::unique_ptr<Ui::DeviceHomePage> ui;
    QListWidget* m_list;
    DeviceNotify* m_notify;
    MaskForm* m_mask;
    QList<UVCDeviceInfo> m_cameras;
    QMap<QString, HidDevices> m_hidMap;
    QMap<QString, DeviceWidgetInfo> m_deviceWidgetMap;
    QMap<int, QString> m_pathMap;
    QMap<QString, bool> m_connectionMap;
    QString m_busyHidPath;
    QMap<QString, QString> m_productNames;
};
