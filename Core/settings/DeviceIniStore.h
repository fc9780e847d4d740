#pragma once

#include "PictureParameters.h"

#include <optional>
#include <QSet>
#include <QString>

/// The picture settings saved for each camera: device.ini in the application's cache location, one
/// group for each serial number.
///
/// A serial number comes from a device and may contain any character. Every serial number has
/// exactly one group; the group of an ordinary serial number has the same name. On Windows the INI
/// format does not distinguish upper and lower case, so serial numbers that differ only in case
/// share a group: other programs can read the file, and makers number their cameras in one case. A
/// file that is damaged or cannot be written never loses the settings that are readable in it.
/// Programs that save at the same time wait for each other. GUI thread; calls block on the file
/// system.
class DeviceIniStore
{
public:
    /// Whether @p serial is one that a camera has reported, so that settings can be stored under
    /// it.
    [[nodiscard]] static bool isSerialNumber(const QString& serial);

    /// The group of a serial number, and the serial number of a group.
    [[nodiscard]] static QString groupName(const QString& serial);
    [[nodiscard]] static QString serialNumber(const QString& group);

    /// What is saved for @p serial, with 0 for each key that is missing. Creates no file. A program
    /// that rewrites the file twice within one tick of the file system's clock, with equal length,
    /// must change its time, as write() does.
    /// @return nothing when there is no group of this serial number or no readable file
    [[nodiscard]] std::optional<PictureParameters> read(const QString& serial) const;

    /// Saves @p picture for @p serial and keeps everything else in the file. A file with damaged
    /// lines is first copied to device.ini.damaged, or to device.ini.damaged.2 and so on when there
    /// is such a copy.
    /// @param unknown keys whose values are not known; the file keeps what it has for them
    /// @return false, with the file as it was, when it cannot be written, has nothing for an
    /// unknown
    ///         key, or another program has not finished its save within 2 s
    [[nodiscard]] bool write(const QString& serial, const PictureParameters& picture,
                             const QSet<QString>& unknown = {}) const;
};
