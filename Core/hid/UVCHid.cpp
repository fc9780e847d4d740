#include "UVCHid.h"

#include "CameraModels.h"
#include "HidFrameLog.h"
#include "LogCategories.h"

UVCHid::UVCHid() = default;

UVCHid::~UVCHid()
{
    m_handle.reset();
    HidApi::exit();
}

bool UVCHid::lock(const QString& path, std::chrono::milliseconds limit)
{
    return m_lock.acquire(path.toUtf8(), CameraLock::Use::Exchange, limit);
}

void UVCHid::getHidDevices(QMap<QString, HidDevices>& out)
{
    const HidEnumeration list = HidApi::enumerate();
    for (const hid_device_info* entry = list.get(); entry; entry = entry->next) {
        HidDevices device;
        device.path = QString::fromLocal8Bit(entry->path);
        device.vendorId = entry->vendor_id;
        device.productId = entry->product_id;
        if (entry->manufacturer_string)
            device.manufacturer = QString::fromWCharArray(entry->manufacturer_string);
        out.insert(device.path, device);
    }
}

bool UVCHid::createHandleWithPath(const QString& path)
{
    m_devicePath = path;
    qCDebug(hidLog) << "In device path: " << path;

    bool found = false;
    unsigned short vid = 0;
    unsigned short pid = 0;
    {
        const HidEnumeration list = HidApi::enumerate();
        for (const hid_device_info* entry = list.get(); entry && !found; entry = entry->next) {
            qCDebug(hidLog) << "Out device path: " << entry->path << " -- "
                            << static_cast<const void*>(entry->manufacturer_string);
            vid = entry->vendor_id;
            pid = entry->product_id;
            found = CameraModels::find(vid, pid) != nullptr;
        }
    }
    if (!found)
        return false;

    qCDebug(hidLog) << "vid: " << vid;
    qCDebug(hidLog) << "pid: " << pid;
    return createHandleWithid(vid, pid);
}

bool UVCHid::createHandleWithid(unsigned short vid, unsigned short pid)
{
    m_vendorId = vid;
    m_productId = pid;
    if (HidApi::init() != 0) {
        qCCritical(hidLog) << "hid init failed";
        return false;
    }
    m_handle = HidApi::open(m_devicePath.toUtf8().constData());
    if (!m_handle) {
        qCCritical(hidLog) << "Open device hid failed.";
        return false;
    }
    return true;
}

void UVCHid::printfStructSend(unsigned char* frame)
{
    HidFrameLog::sent(frame);
}
