#pragma once

#include "ConstRange.h"
#include "HidDevices.h"

#include <array>
#include <QString>

/// Everything that distinguishes one product from another. The rows stand in models.json, from
/// which the build also makes the udev rule and the list of devices for software centres.
struct CameraModel
{
    /// The groups of the list of supported products.
    enum class Group {
        UsbCamera,
        DesktopDevice,
    };

    Group group;
    const char* productName; ///< in the list of supported products
    const char* displayName; ///< on the card and as the title of the camera's pages
    const char* modelText;   ///< the model's name for the update service
    quint16 vendorId;        ///< USB ids; 0 for a product that is listed but not recognised
    quint16 productId;
    const char* cardPicture;  ///< resource path, 96 x 72 pixels
    const char* largePicture; ///< resource path, 240 x 180 pixels

    [[nodiscard]] constexpr bool isRecognised() const { return vendorId != 0; }
};

/// The table of camera models.
namespace CameraModels {

/// Reference list of the supported products. Cameras are recognised by their USB ids; no decision
/// reads these names.
constexpr std::array<const char*, 4> kReferenceNames{"SVC802", "SVA802", "SVT202",
                                                     "Sorvanta USB Camera"};

[[nodiscard]] ConstRange<CameraModel> rows();

/// The model with these USB ids, or null.
[[nodiscard]] const CameraModel* find(quint16 vendorId, quint16 productId);

/// The model whose control interface @p device is, or null.
[[nodiscard]] const CameraModel* find(const HidDevices& device);

/// The model with this model text. An unknown text returns the first model, so that a record
/// without a model has a picture.
[[nodiscard]] const CameraModel& withModelText(const QString& modelText);

/// Whether @p devicePath is that of a video device of @p model: its path contains the ids of the
/// camera, in either case, because Windows and drivers differ in the case of device paths.
[[nodiscard]] bool isVideoPath(const CameraModel& model, const QString& devicePath);

} // namespace CameraModels
