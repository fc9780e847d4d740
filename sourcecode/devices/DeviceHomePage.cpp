#include "DeviceHomePage.h"

#include "CameraHandle.h"
#include "DeviceListDelegate.h"
#include "MaskForm.h"
#include "SupportedCameras.h"
#include "SvtaDeviceWidget.h"
#include "ui_DeviceHomePage.h"
#include "UVCCamera.h"

#include <algorithm>
#include <QDebug>
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

constexpr unsigned long kHidReadyMs = 500;
constexpr int kItemHeight = 120;
constexpr int kItemWidth = 320;
constexpr int kMaxVisibleItems = 5;
constexpr int kFilledSpacerHeight = 17;

const char* const kFilledBackground =
    "#bgWidget { background-color: #F4F4F4; border: 1px solid #F2F2F2; border-top: none; }";
const char* const kWhiteBackground =
    "#bgWidget { background-color: #FFFFFF; border: 1px solid #F2F2F2; border-top: none; }";
const char* const kListStyle =
    "QListWidget { background: transparent; border: none; outline: none; }"
    "QListWidget::item, QListWidget::item:hover, QListWidget::item:selected {"
    " background: transparent; border: none; }";
// Narrow enough for a card beside it.
const char* const kScrollBarStyle =
    "QScrollBar:vertical { width: 6px; background: transparent; margin: 0; }"
    "QScrollBar::handle:vertical { background: #C9CDD4; border-radius: 3px; min-height: 32px; }"
    "QScrollBar::handle:vertical:hover { background: #A9AEB8; }"
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
    ui->bgWidget->setStyleSheet(QString::fromLatin1(kWhiteBackground));

    m_list = new QListWidget(ui->bgWidget);
    m_list->setObjectName(QStringLiteral("deviceList"));
    m_list->setAccessibleName(tr("Cameras"));
    m_list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_list->setStyleSheet(QString::fromLatin1(kListStyle));
    for (QAbstractScrollArea* area :
         std::initializer_list<QAbstractScrollArea*>{m_list, ui->scrollArea})
        area->verticalScrollBar()->setStyleSheet(QString::fromLatin1(kScrollBarStyle));
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
    // The watcher sends one of the two for each notification; either makes one rebuild.
    connect(m_notify, &DeviceNotify::sigCameraDeviceUpdate, this,
            [this](const QList<UVCDeviceInfo>& cameras, const QMap<QString, HidDevices>&,
                   int status) { slotUpdateCameraList(cameras, status); });
    connect(m_notify, &DeviceNotify::sigCameraDeviceUpdateWithoutHid, this,
            &DeviceHomePage::slotUpdateCameraList);
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
    QThread::msleep(kHidReadyMs);
    m_hidMap.clear();
    UVCHid::getHidDevices(m_hidMap);

    m_deviceWidgetMap.clear();
    m_pathMap.clear();
    const QMap<QString, bool> lastConnections = std::exchange(m_connectionMap, {});
    PairingCounters counters;
    for (const HidDevices& hidItem : qAsConst(m_hidMap)) {
        qDebug() << "遍历hid设备"
                 << "vid =" << hidItem.vendorId << "pid =" << hidItem.productId;
        if (!SupportedCameras::isCameraInterface(hidItem))
            continue;
        qDebug() << "获取vid == 41224 和 pid == 51202的设备";
        const bool connected = hidItem.path == m_busyHidPath ? lastConnections.value(hidItem.path)
                                                             : isConnected(hidItem);
        m_connectionMap.insert(hidItem.path, connected);
        addCard(hidItem, hidItem.path == m_hidMap.lastKey(), cameras, counters);
    }

    qDebug() << "更新home页的设备列表";
    ui->bgWidget->setStyleSheet(QString::fromLatin1(kWhiteBackground));
    emit sigSetDeviceWidgetMaps(m_deviceWidgetMap);
}

void DeviceHomePage::addCard(const HidDevices& hidItem, bool isLastHidEntry,
                             const QList<UVCDeviceInfo>& cameras, PairingCounters& counters)
{
    ++counters.hidCnt;
    qDebug() << "hidItem.path" << hidItem.path;
    qDebug() << "curStauts =" << m_connectionMap.value(hidItem.path);

    DeviceWidgetInfo devWidgetInfo;
    matchVideoDevices(hidItem, cameras, devWidgetInfo, counters);
    if (!m_pathMap.contains(counters.hidCnt))
        return; // an interface without a camera to show: it would have no picture and no name
    devWidgetInfo.model = QStringLiteral("RQ-T47K");
    devWidgetInfo.path = m_pathMap.value(counters.hidCnt);
    qDebug() << "hidCnt" << counters.hidCnt << "devWidgetInfo.path" << devWidgetInfo.path
             << "pathMap[hidCnt]" << m_pathMap.value(counters.hidCnt);
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

/// Numbers every matching video device of this pass. The counter runs on through all passes, so the
/// first pass alone numbers them as the cards read them: the k-th HID interface gets the k-th video
/// device.
void DeviceHomePage::matchVideoDevices(const HidDevices& hidItem,
                                       const QList<UVCDeviceInfo>& cameras,
                                       DeviceWidgetInfo& devWidgetInfo, PairingCounters& counters)
{
    for (const UVCDeviceInfo& camera : cameras) {
        qDebug() << "获取相应hid设备的摄像机功能的设备" << camera.displayName << "-"
                 << camera.friendlyName << "-" << camera.devicePath;
        const QString usbPath = camera.devicePath;
        qDebug() << "usbPath" << usbPath;
        if (!SupportedCameras::isCameraVideoPath(usbPath))
            continue;
        qDebug() << "找到了相应hid设备的摄像机功能的设备";
        ++counters.hidCameraCnt;

        devWidgetInfo.status = m_connectionMap.value(hidItem.path) ? 1 : 0;
        devWidgetInfo.name = QStringLiteral("NOVA EDGE");
        devWidgetInfo.path = usbPath;
        devWidgetInfo.hidPath = hidItem.path;
        devWidgetInfo.icon.clear();
        qDebug() << "devWidgetInfo.path = " << devWidgetInfo.path
                 << "devWidgetInfo.status = " << devWidgetInfo.status;
        qDebug() << "path =" << devWidgetInfo.path;
        m_pathMap.insert(counters.hidCameraCnt, usbPath);
        qDebug() << "hidCameraCnt =" << counters.hidCameraCnt << "pathMap[hidCameraCnt]"
                 << m_pathMap.value(counters.hidCameraCnt);
    }
}

void DeviceHomePage::slotUpdateCameraList(const QList<UVCDeviceInfo>& cameras, int status)
{
    qDebug() << "将新获取的设备添加到设备列表，发送更新设备事件";
    const QList<UVCDeviceInfo> oldCameras = m_cameras;
    m_cameras = cameras;
    m_list->clear();
    const QMap<QString, HidDevices> oldHidMap = m_hidMap;

    qDebug() << "before getHidCamerasAndAddToList";
    getHidCamerasAndAddToList(m_cameras);
    qDebug() << "after getHidCamerasAndAddToList";

    if (entryCount() > 0)
        showFilledState();
    else
        showEmptyState();
    fixListHeight(std::min(entryCount(), kMaxVisibleItems));

    emit sigUpdateCameraListFinished(m_cameras, oldCameras, m_hidMap, oldHidMap, status);
    repaint();

    const QString openHidPath = CameraHandle::instance().currentDevice().hidPath;
    if (m_hidMap.contains(openHidPath) && !oldHidMap.contains(openHidPath))
        emit sigInitCamera(); // the open camera is back; its link still hangs on the old interface
}

int DeviceHomePage::entryCount() const
{
    return m_list->count();
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
    ui->bgWidget->setStyleSheet(QString::fromLatin1(kFilledBackground));
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
    ui->bgWidget->setStyleSheet(QString::fromLatin1(kWhiteBackground));
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
