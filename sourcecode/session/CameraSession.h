#pragma once

#include "DeviceSettings.h"
#include "DeviceWidgetInfo.h"
#include "ParameterModel.h"
#include "StreamFormat.h"
#include "VideoProcAmp.h"

#include <functional>
#include <memory>
#include <optional>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

class UVCCamera;

/// Everything that belongs to the camera that is open, and to no other: its record, its link, its
/// settings as stored and as edited, what it streams and the steps that wait for it. A new camera
/// has a new session, so nothing of one camera can reach another.
///
/// A session without a HID path stands for "no camera is open". GUI thread; calls to the camera
/// block as those of UVCCamera do.
class CameraSession : public QObject
{
    Q_OBJECT

public:
    /// @param camera the program's preview and HID endpoint; outlives the session
    CameraSession(UVCCamera& camera, DeviceWidgetInfo info, QObject* parent = nullptr);

    [[nodiscard]] bool isOpen() const { return !mDeviceWidgetInfo.hidPath.isEmpty(); }
    [[nodiscard]] const DeviceWidgetInfo& info() const { return mDeviceWidgetInfo; }
    void setStatus(quint8 status) { mDeviceWidgetInfo.status = status; }
    /// The camera has left the bus and has come back under other names.
    void setPaths(const QString& path, const QString& hidPath);

    /// Opens the HID link to the camera; a link that is open is closed first.
    bool openLink();
    void closeLink();
    /// Opens the link and reads firmware version and serial number into the record. Begins a new
    /// opening: after two reads in a row without any answer, nothing more is read in an opening,
    /// because each such read blocks for three seconds.
    void refreshIdentity();

    [[nodiscard]] ParameterModel& parameters() { return m_parameters; }
    /// Whether the parameters were loaded since the settings page was last left.
    [[nodiscard]] bool areParametersLoaded() const { return m_parametersLoaded; }
    void setParametersLoaded(bool loaded) { m_parametersLoaded = loaded; }
    /// Whether the parameters are those of this camera.
    [[nodiscard]] bool areValuesKnown() const { return m_valuesKnown; }
    /// Fills both maps, from device.ini and from the camera.
    void loadParameters();
    /// Empties both maps; the next visit of the settings page loads them again.
    void forgetParameters();

    /// A setting of the camera; nothing when it refuses or does not answer, or when nothing more is
    /// read in this opening.
    [[nodiscard]] std::optional<int> readSetting(DeviceSetting setting);
    /// Asks the camera for every value and takes those that another program has changed. A value
    /// that the camera could only take within its own range is not a change.
    /// @return whether there was any. False, with nothing asked, while no values are loaded or a
    ///         step is deferred.
    [[nodiscard]] bool takeChangesOfOthers();
    void readIniFile();
    void readDeviceParam();
    [[nodiscard]] bool writeIniFile();

    /// Asks the camera what it streams. A camera that does not answer keeps the answer that is
    /// known.
    /// @return false when nothing was learned
    bool refreshStream();
    [[nodiscard]] StreamFormat stream() const { return StreamFormat::of(m_resolution); }
    [[nodiscard]] bool is4kInUse() const { return m_4kInUse; }
    [[nodiscard]] bool was4kInUse() const { return m_4kWasInUse; }

    /// Runs @p step after @p delayMs, or before the program turns to another camera if that is
    /// sooner: the step is meant for this one. A step that still waits when the session ends is
    /// dropped.
    void defer(int delayMs, std::function<void()> step);
    /// Runs all deferred steps now, in their order.
    void flushDeferred();

private:
    [[nodiscard]] bool mayRead() const;
    void deriveIntelligent();
    [[nodiscard]] bool takePictureChange(PictureProperty property);
    void noteRead();

    UVCCamera& m_camera;
    DeviceWidgetInfo mDeviceWidgetInfo;
    ParameterModel m_parameters;
    bool m_parametersLoaded = false;
    bool m_valuesKnown = false;
    QMap<QString, int> m_resolution; ///< last answer about the camera's stream
    int m_silentReads = 0;           ///< in a row, in this opening
    bool m_4kInUse = false;
    bool m_4kWasInUse = false;
    QList<std::shared_ptr<std::function<void()>>> m_deferred;
};
