#pragma once

#include "DeviceNotify.h"
#include "DeviceWidgetInfo.h"
#include "PendingNotifications.h"

#include <memory>
#include <QList>
#include <QMap>
#include <QWidget>

class MaskForm;
struct CameraModel;
class QListWidget;

namespace Ui {
class DeviceHomePage;
}

/// The device list: one card for each supported camera, or the empty state.
///
/// Pairs the video devices with the HID interfaces of the same cameras, and rebuilds the list from
/// scratch when the hot-plug watch reports a change. Notifications that arrive during a rebuild are
/// served together by the next one. GUI thread.
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

    /// Sends no command to the camera at @p hidPath from now on and keeps its state in the list:
    /// its firmware is being written. Empty when there is no such camera.
    void setBusyCamera(const QString& hidPath) { m_busyHidPath = hidPath; }

    /// Stores the serial number that the camera at @p hidPath has reported. Its card shows the
    /// number until the camera is unplugged. An empty number is ignored.
    void setSerialNumber(const QString& hidPath, const QString& sn);

    /// Number of cards.
    [[nodiscard]] int entryCount() const;
    /// Shows the list in the place of the empty state.
    void showFilledState();
    void showEmptyState();
    /// Gives the list the height that it has after a hot-plug event: at most that of five cards.
    void limitListHeight();

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
    /// Pairs the k-th HID interface of a model with the k-th video device of the same model.
    struct Pairing
    {
        int hidCnt = 0;             ///< HID interfaces so far
        int hidCameraCnt = 0;       ///< video devices so far, in all passes
        QMap<int, QString> pathMap; ///< number of a video device to its path
    };

    void queueUpdate(const QList<UVCDeviceInfo>& cameras, int status);
    void updateCameraList(const QList<UVCDeviceInfo>& cameras, const QList<int>& statuses);
    void addCards(const QList<UVCDeviceInfo>& cameras);
    void setBackground(const char* style);
    void addCard(const HidDevices& hidItem, const CameraModel& model, bool isLastHidEntry,
                 const QList<UVCDeviceInfo>& cameras);
    void matchVideoDevices(const HidDevices& hidItem, const CameraModel& model,
                           const QList<UVCDeviceInfo>& cameras, DeviceWidgetInfo& devWidgetInfo,
                           Pairing& pairing);
    void forgetAbsentCameras();
    void fixListHeight(int entries);

    std::unique_ptr<Ui::DeviceHomePage> ui;
    QListWidget* m_list;
    DeviceNotify* m_notify;
    MaskForm* m_mask;
    PendingNotifications m_pending;
    QList<UVCDeviceInfo> m_cameras;
    QMap<QString, HidDevices> m_hidMap;
    QMap<QString, DeviceWidgetInfo> m_deviceWidgetMap;
    QMap<const CameraModel*, Pairing> m_pairings; ///< of the last build
    QMap<QString, bool> m_connectionMap;
    QMap<QString, QString> m_serialNumbers; ///< those that are known, by HID path
    QString m_busyHidPath;
    /// Decimal ids of a camera, joined by "&", to its product name. Part of the interface that the
    /// list has in common with other tools of the product line; nothing here reads it.
    QMap<QString, QString> m_productNames;
};
