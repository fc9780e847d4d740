#include "DeviceHomePage.h"

#include "BusyCursor.h"
#include "CameraHandle.h"
#include "CameraModels.h"
#include "DeviceListDelegate.h"
#include "LogCategories.h"
#include "MaskForm.h"
#include "Style.h"
#include "SvtaDeviceWidget.h"
#include "ui_DeviceHomePage.h"
#include "UVCCamera.h"

#include <algorithm>
#include <iterator>
#include <QListWidget>
#include <QScrollBar>
#include <QThread>
#include <utility>

namespace {

bool isConnected(const HidDevices& hidItem)
{
    return UVCHid::getCameraConnectionStatus(hidItem.path.toUtf8().constData(), hidItem.vendorId,
                                             hidItem.productId);
}

/// The interfaces of @p before that are in @p after too.
QMap<QString, HidDevices> inBoth(const QMap<QString, HidDevices>& before,
                                 const QMap<QString, HidDevices>& after)
{
    QMap<QString, HidDevices> both;
    for (auto device = before.begin(); device != before.end(); ++device) {
        if (after.contains(device.key()))
            both.insert(device.key(), device.value());
    }
    return both;
}

constexpr unsigned long kHidReadyMs = 500;
constexpr int kItemHeight = 120;
constexpr int kItemWidth = 320;
constexpr int kMaxVisibleItems = 5;
constexpr int kFilledSpacerHeight = 17;

const char* const kFilledBackground =
    "#bgWidget { background-color: @list; border: 1px solid @line; border-top: none; }";
const char* const kWhiteBackground =
    "#bgWidget { background-color: @surface; border: 1px solid @line; border-top: none; }";
const char* const kListStyle =
    "QListWidget { background: transparent; border: none; outline: none; }"
    "QListWidget::item, QListWidget::item:hover, QListWidget::item:selected {"
    " background: transparent; border: none; }";
// Narrow enough for a card beside it. The background is that of the filled list: a transparent one
// leaves the scroll bar black.
const char* const kScrollBarStyle =
    "QScrollBar:vertical { width: 6px; background: @list; margin: 0; }"
    "QScrollBar::handle:vertical { background: @scroll-handle; border-radius: 3px; min-height: "
    "32px; }"
    "QScrollBar::handle:vertical:hover { background: @scroll-handle-hover; }"
    "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
    "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }";

} // namespace

DeviceHomePage::DeviceHomePage(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::DeviceHomePage>())
    , m_list(nullptr)
    , m_notify(new DeviceNotify(this))
    , m_mask(new MaskForm(this))
    , m_productNames{{QStringLiteral("41224&51202"), QStringLiteral("Vexa Cam")}}
{
    ui->setupUi(this);
    ui->bgWidget->setStyleSheet(Style::sheet(kWhiteBackground));

    m_list = new QListWidget(ui->bgWidget);
    m_list->setObjectName(QStringLiteral("deviceList"));
    m_list->setAccessibleName(tr("Cameras"));
    m_list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_list->setStyleSheet(QString::fromLatin1(kListStyle));
    for (QAbstractScrollArea* area :
         std::initializer_list<QAbstractScrollArea*>{m_list, ui->scrollArea})
        area->verticalScrollBar()->setStyleSheet(Style::sheet(kScrollBarStyle));
    m_list->setItemDelegate(new DeviceListDelegate(m_list));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->hide();

    CameraHandle::instance().setNotify(m_notify);
    m_mask->setCoveredWidget(this);

    connect(ui->btnSupportedProducts, &QPushButton::clicked, this,
            &DeviceHomePage::sigShowSupportedProduct);
    // The watcher emits one of the two for each event.
    connect(m_notify, &DeviceNotify::sigCameraDeviceUpdate, this,
            [this](const QList<UVCDeviceInfo>& cameras, const QMap<QString, HidDevices>&,
                   int status) { queueUpdate(cameras, status); });
    connect(m_notify, &DeviceNotify::sigCameraDeviceUpdateWithoutHid, this,
            &DeviceHomePage::queueUpdate);
}

DeviceHomePage::~DeviceHomePage()
{
    CameraHandle::instance().setNotify(nullptr);
}

void DeviceHomePage::start()
{
    m_cameras.clear();
    UVCCamera::enumerateCameras(m_cameras);
    m_hidMap.clear();
    UVCHid::getHidDevices(m_hidMap);
    m_list->clear(); // a camera that came during the start animation has its card already
    getHidCamerasAndAddToList(m_cameras);
}

void DeviceHomePage::getHidCamerasAndAddToList(const QList<UVCDeviceInfo>& cameras)
{
    addCards(cameras);
    setBackground(kWhiteBackground);
    emit sigSetDeviceWidgetMaps(m_deviceWidgetMap);
}

void DeviceHomePage::addCards(const QList<UVCDeviceInfo>& cameras)
{
    const BusyCursor busy;
    QThread::msleep(kHidReadyMs);
    m_hidMap.clear();
    UVCHid::getHidDevices(m_hidMap);
    forgetAbsentCameras();

    m_deviceWidgetMap.clear();
    m_pairings.clear();
    const QMap<QString, bool> lastConnections = std::exchange(m_connectionMap, {});
    for (const HidDevices& hidItem : qAsConst(m_hidMap)) {
        qCDebug(hotplugLog) << "遍历hid设备"
                            << "vid =" << hidItem.vendorId << "pid =" << hidItem.productId;
        const CameraModel* model = CameraModels::find(hidItem);
        if (!model)
            continue;
        qCDebug(hotplugLog) << "获取vid == 41224 和 pid == 51202的设备";
        const bool connected = hidItem.path == m_busyHidPath ? lastConnections.value(hidItem.path)
                                                             : isConnected(hidItem);
        m_connectionMap.insert(hidItem.path, connected);
        addCard(hidItem, *model, hidItem.path == m_hidMap.lastKey(), cameras);
    }

    qCDebug(hotplugLog) << "更新home页的设备列表";
}

void DeviceHomePage::setBackground(const char* style)
{
    // A new sheet costs a millisecond for each card, even when it is the same as before.
    const QString sheet = Style::sheet(style);
    if (ui->bgWidget->styleSheet() != sheet)
        ui->bgWidget->setStyleSheet(sheet);
}

void DeviceHomePage::addCard(const HidDevices& hidItem, const CameraModel& model,
                             bool isLastHidEntry, const QList<UVCDeviceInfo>& cameras)
{
    Pairing& pairing = m_pairings[&model];
    ++pairing.hidCnt;
    qCDebug(hotplugLog) << "hidItem.path" << hidItem.path;
    qCDebug(hotplugLog) << "curStauts =" << m_connectionMap.value(hidItem.path);

    DeviceWidgetInfo devWidgetInfo;
    matchVideoDevices(hidItem, model, cameras, devWidgetInfo, pairing);
    if (!pairing.pathMap.contains(pairing.hidCnt))
        return; // an interface without a camera to show: it would have no picture and no name
    devWidgetInfo.model = QLatin1String(model.modelText);
    devWidgetInfo.path = pairing.pathMap.value(pairing.hidCnt);
    devWidgetInfo.sn = m_serialNumbers.value(hidItem.path);
    qCDebug(hotplugLog) << "hidCnt" << pairing.hidCnt << "devWidgetInfo.path" << devWidgetInfo.path
                        << "pathMap[hidCnt]" << pairing.pathMap.value(pairing.hidCnt);
    m_deviceWidgetMap.insert(devWidgetInfo.path, devWidgetInfo);

    auto* item = new QListWidgetItem;
    auto* card = new SvtaDeviceWidget;
    if (!isLastHidEntry)
        item->setSizeHint(QSize(kItemWidth, kItemHeight));
    card->setData(devWidgetInfo);
    m_list->addItem(item);
    m_list->setItemWidget(item, card);
    emit sigSetDeviceParam(devWidgetInfo);
    connect(card, &SvtaDeviceWidget::sigDeviceWidgetClicked, this,
            &DeviceHomePage::slotCameraItemClicked);
}

/// Numbers every matching video device of this pass. The counter continues through all passes of a
/// model, so the cards use the numbers of the first pass only: the k-th HID interface of a model
/// gets its k-th video device.
void DeviceHomePage::matchVideoDevices(const HidDevices& hidItem, const CameraModel& model,
                                       const QList<UVCDeviceInfo>& cameras,
                                       DeviceWidgetInfo& devWidgetInfo, Pairing& pairing)
{
    for (const UVCDeviceInfo& camera : cameras) {
        qCDebug(hotplugLog) << "获取相应hid设备的摄像机功能的设备" << camera.displayName << "-"
                            << camera.friendlyName << "-" << camera.devicePath;
        const QString usbPath = camera.devicePath;
        qCDebug(hotplugLog) << "usbPath" << usbPath;
        if (!CameraModels::isVideoPath(model, usbPath))
            continue;
        qCDebug(hotplugLog) << "找到了相应hid设备的摄像机功能的设备";
        ++pairing.hidCameraCnt;

        devWidgetInfo.status = m_connectionMap.value(hidItem.path) ? 1 : 0;
        devWidgetInfo.name = QString::fromUtf8(model.displayName);
        devWidgetInfo.path = usbPath;
        devWidgetInfo.hidPath = hidItem.path;
        devWidgetInfo.icon.clear();
        qCDebug(hotplugLog) << "devWidgetInfo.path = " << devWidgetInfo.path
                            << "devWidgetInfo.status = " << devWidgetInfo.status;
        qCDebug(hotplugLog) << "path =" << devWidgetInfo.path;
        pairing.pathMap.insert(pairing.hidCameraCnt, usbPath);
        qCDebug(hotplugLog) << "hidCameraCnt =" << pairing.hidCameraCnt << "pathMap[hidCameraCnt]"
                            << pairing.pathMap.value(pairing.hidCameraCnt);
    }
}

void DeviceHomePage::queueUpdate(const QList<UVCDeviceInfo>& cameras, int status)
{
    if (m_pending.isEmpty()) {
        // Behind the notifications that have arrived during a rebuild and wait in Qt's queue.
        QMetaObject::invokeMethod(
            this,
            [this] {
                const PendingNotifications::Batch batch = m_pending.take();
                updateCameraList(batch.cameras, batch.statuses);
            },
            Qt::QueuedConnection);
    }
    m_pending.add(cameras, status);
}

void DeviceHomePage::slotUpdateCameraList(const QList<UVCDeviceInfo>& cameras, int status)
{
    updateCameraList(cameras, {status});
}

void DeviceHomePage::updateCameraList(const QList<UVCDeviceInfo>& cameras,
                                      const QList<int>& statuses)
{
    qCDebug(hotplugLog) << "将新获取的设备添加到设备列表，发送更新设备事件";
    const QList<UVCDeviceInfo> oldCameras = m_cameras;
    m_cameras = cameras;
    m_list->clear();
    const QMap<QString, HidDevices> oldHidMap = m_hidMap;

    qCDebug(hotplugLog) << "before getHidCamerasAndAddToList";
    addCards(m_cameras);
    emit sigSetDeviceWidgetMaps(m_deviceWidgetMap);
    qCDebug(hotplugLog) << "after getHidCamerasAndAddToList";

    if (entryCount() > 0)
        showFilledState();
    else
        showEmptyState();
    limitListHeight();

    QMap<QString, HidDevices> before = oldHidMap;
    for (const int status : statuses) {
        // Of several changes each signal describes its own: the removal what has gone, the arrival
        // what has come after it.
        const QMap<QString, HidDevices> after =
            status == statuses.last() ? m_hidMap : inBoth(before, m_hidMap);
        emit sigUpdateCameraListFinished(m_cameras, oldCameras, after, before, status);
        before = after;
    }
    repaint();

    const QString openHidPath = CameraHandle::instance().currentDevice().hidPath;
    if (m_hidMap.contains(openHidPath) && !oldHidMap.contains(openHidPath))
        emit sigInitCamera(); // the open camera is back; its link still uses the old interface
}

void DeviceHomePage::setSerialNumber(const QString& hidPath, const QString& sn)
{
    if (sn.isEmpty())
        return;
    m_serialNumbers.insert(hidPath, sn);
    for (int row = 0; row < m_list->count(); ++row) {
        auto* card = qobject_cast<SvtaDeviceWidget*>(m_list->itemWidget(m_list->item(row)));
        if (card && card->data().hidPath == hidPath)
            card->setSerialNumber(sn);
    }
}

/// Another camera may come under the same path.
void DeviceHomePage::forgetAbsentCameras()
{
    for (auto it = m_serialNumbers.begin(); it != m_serialNumbers.end();)
        it = m_hidMap.contains(it.key()) ? std::next(it) : m_serialNumbers.erase(it);
}

int DeviceHomePage::entryCount() const
{
    return m_list->count();
}

void DeviceHomePage::limitListHeight()
{
    fixListHeight(std::min(entryCount(), kMaxVisibleItems));
}

void DeviceHomePage::fixListHeight(int entries)
{
    m_list->setFixedHeight(entries * kItemHeight);
}

void DeviceHomePage::showFilledState()
{
    QVBoxLayout* layout = ui->listLayout;
    if (layout->indexOf(m_list) < 0) {
        layout->removeWidget(ui->noDeviceWidget);
        ui->verticalSpacer->changeSize(20, kFilledSpacerHeight, QSizePolicy::Minimum,
                                       QSizePolicy::Fixed);
        layout->insertWidget(1, m_list);
        layout->addStretch();
        layout->invalidate();
    }
    fixListHeight(entryCount());
    setBackground(kFilledBackground);
    ui->noDeviceWidget->hide();
    m_list->show();
}

void DeviceHomePage::showEmptyState()
{
    QVBoxLayout* layout = ui->listLayout;
    if (layout->indexOf(m_list) >= 0) {
        layout->removeWidget(m_list);
        delete layout->takeAt(layout->count() - 1); // the stretch under the list
        ui->verticalSpacer->changeSize(20, 0, QSizePolicy::Minimum, QSizePolicy::Fixed);
        layout->insertWidget(0, ui->noDeviceWidget);
        layout->invalidate();
    }
    setBackground(kWhiteBackground);
    m_list->hide();
    ui->noDeviceWidget->show();
}

void DeviceHomePage::slotCameraItemClicked(DeviceWidgetInfo info)
{
    if (info.status == 0)
        emit sigShowDeviceInfo(info);
    else
        emit sigShowDevicePages(info);
}
