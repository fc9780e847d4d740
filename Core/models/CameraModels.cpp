#include "CameraModels.h"

#include "CameraModelRows.h"

#include <algorithm>

ConstRange<CameraModel> CameraModels::rows()
{
    return ConstRange(kCameraModelRows);
}

const CameraModel* CameraModels::find(quint16 vendorId, quint16 productId)
{
    for (const CameraModel& model : kCameraModelRows) {
        if (model.isRecognised() && model.vendorId == vendorId && model.productId == productId)
            return &model;
    }
    return nullptr;
}

const CameraModel* CameraModels::find(const HidDevices& device)
{
    return find(device.vendorId, device.productId);
}

const CameraModel& CameraModels::withModelText(const QString& modelText)
{
    const auto* const found =
        std::find_if(std::begin(kCameraModelRows), std::end(kCameraModelRows),
                     [&modelText](const CameraModel& model) {
                         return model.isRecognised() && model.modelText == modelText;
                     });
    return found == std::end(kCameraModelRows) ? kCameraModelRows[0] : *found;
}

bool CameraModels::isVideoPath(const CameraModel& model, const QString& devicePath)
{
    const QString ids = QStringLiteral("vid_%1&pid_%2")
                            .arg(model.vendorId, 4, 16, QLatin1Char('0'))
                            .arg(model.productId, 4, 16, QLatin1Char('0'));
    return model.isRecognised() && devicePath.contains(ids, Qt::CaseInsensitive);
}
