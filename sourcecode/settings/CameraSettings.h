#pragma once

#include "DeviceSettings.h"
#include "DeviceWidgetInfo.h"
#include "VideoProcAmp.h"

#include <optional>
#include <QObject>
#include <QString>

class OpenCamera;
class ParamSettingsPage;

/// Applies what the user sets on the settings page: every edit goes into the edited settings of the
/// open camera and to the camera at once. A camera that refuses is logged; the edit stays, so a
/// save stores what the user chose.
///
/// GUI thread; calls to the camera block.
class CameraSettings : public QObject
{
    Q_OBJECT

public:
    CameraSettings(OpenCamera& camera, ParamSettingsPage& page, QObject* parent = nullptr);

    /// Applies the picture values that are saved for @p sn to the camera, without touching the
    /// maps.
    void reapplySaved(const QString& sn);

    /// Opens @p info, which is not the camera whose pages are open, for as long as it takes to
    /// apply what is saved for it: a camera that is plugged in again gets its picture back.
    /// @return the serial number that the camera has reported; empty when it has reported none
    QString reapplySavedTo(const DeviceWidgetInfo& info);

    /// Shows the edited picture values; the page's signals send them to the camera.
    void setDeviceParam();
    /// Shows the settings that the camera itself keeps. Marking a framing mode, a view or the
    /// mirror also writes it back to the camera, which does no harm: the value came from there.
    void setAdvancedParam();
    /// As setAdvancedParam(), but writes nothing to the camera.
    void showAdvancedParam();

    void applyPicture(PictureProperty property, int value);
    void apply(DeviceSetting setting, int value);
    /// The user has chosen a field of view on the page.
    void applySelectedView();
    void setFigureCenter(bool on);
    /// @param lastIntelligent not 0: automatic framing comes back, else frame master
    void switchIntelligent(bool on, int lastIntelligent);
    /// @param button 0 automatic framing, else frame master
    void chooseFraming(int button);
    /// @param imageMode SvtaPagesView::ImageMode
    void setImageMode(int imageMode);

    /// Asks the camera for its stream and shows on the page whether 4K is in use.
    void refresh4kState();

    /// Shows what another program has changed in the camera since the page was filled, and writes
    /// nothing.
    void showChangesOfOthers();

    /// Writes the edited settings to device.ini. The camera holds every value already.
    /// @return false, with maps and file unchanged, when the camera or the file cannot be reached
    bool save();
    void resetToDefaults();
    /// Shows the stored settings, which writes them back to the camera, and drops the edited ones.
    void discard();

private:
    [[nodiscard]] int currentValue(DeviceSetting setting);
    [[nodiscard]] std::optional<int> refreshSubMode();
    [[nodiscard]] bool isFramingUnknown() const;
    [[nodiscard]] bool isOnlyShown(const QString& key) const;
    void logStored();

    OpenCamera& m_camera;
    ParamSettingsPage& m_page;
    /// The page shows values that the program has: its signals are no choice of the user. A value
    /// that the camera has not reported is not written then.
    bool m_isShowing = false;
    bool m_isReadOnly = false; ///< and no value is written
};
