#pragma once

#include "PictureSettings.h"
#include "PreviewFailure.h"
#include "SampleGrabberCallback.h"
#include "UVCDeviceInfo.h"
#include "UVCHid.h"
#include "VideoProcAmp.h"

#include <array>
#include <memory>
#include <optional>
#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QString>
#include <QtGui/qwindowdefs.h>

class CaptureGraph;

/// The camera that is open: its live picture, its picture properties and, through UVCHid, its
/// settings.
///
/// The preview belongs to the GUI thread. The HID link and the preview are independent of each
/// other; both are pointed at a camera through setCurrentDevicePath(). An object that is used for
/// nothing but a firmware transfer may open its link and write on a worker thread: see
/// updateFile().
class UVCCamera : public QObject
{
    Q_OBJECT

public:
    /// Makes an empty preview graph.
    explicit UVCCamera(QObject* parent = nullptr);
    /// For a graph other than the platform's own.
    explicit UVCCamera(std::unique_ptr<CaptureGraph> graph, QObject* parent = nullptr);
    ~UVCCamera() override;

    /// Appends one entry for each video capture device; callable on any thread.
    static void enumerateCameras(QList<UVCDeviceInfo>& out);

    /// Builds the preview of the video device with exactly this device path, to be shown in
    /// @p window. A preview that was built before is released.
    /// @return false, with the device released, when there is no such device or its preview cannot
    ///         be built. True, with nothing built, on a screen whose colour depth has no preview
    ///         format.
    bool openDevice(const QString& devicePath, WId window);
    /// Shows and runs the preview; does not wait for the first frame.
    /// @return false when none is built or the camera does not stream
    bool startCapture();
    void stopCapture();
    /// For a change of the size of the window that shows the preview.
    void fitVideoWindow();
    /// Releases the preview.
    void closeDevice();

    /// Why the last openDevice() or startCapture() failed, or the preview has ended since.
    [[nodiscard]] const PreviewFailure& lastFailure() const { return m_failure; }

    /// Whether a preview is built.
    [[nodiscard]] bool isOpened() const { return m_opened; }
    [[nodiscard]] bool isRunning() const { return m_running; }
    /// Negotiated size of the frames.
    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }

    /// Gives access to the picture properties of the device that openDevice() bound.
    void initVideoProcAmp();

    /// The current value of a picture property in the camera's own units; the stored value when the
    /// camera does not answer.
    int picture(PictureProperty property);
    /// As picture(), but nothing when the camera does not report the value.
    [[nodiscard]] std::optional<int> readPicture(PictureProperty property);
    /// Minimum and maximum in the camera's own units; (0, 0) when the camera does not answer.
    QPair<int, int> pictureRange(PictureProperty property);
    /// @return false, with the stored value unchanged, when the camera refuses or has no such
    ///         property
    bool setPicture(PictureProperty property, int value);

    int getBright() { return picture(PictureProperty::Brightness); }
    int getContrast() { return picture(PictureProperty::Contrast); }
    int getSaturation() { return picture(PictureProperty::Saturation); }
    int getSharpness() { return picture(PictureProperty::Sharpness); }
    QPair<int, int> getBrightRange() { return pictureRange(PictureProperty::Brightness); }
    QPair<int, int> getContrastRange() { return pictureRange(PictureProperty::Contrast); }
    QPair<int, int> getSaturationRange() { return pictureRange(PictureProperty::Saturation); }
    QPair<int, int> getSharpnessRange() { return pictureRange(PictureProperty::Sharpness); }
    bool setBright(int value) { return setPicture(PictureProperty::Brightness, value); }
    bool setContrast(int value) { return setPicture(PictureProperty::Contrast, value); }
    bool setSaturation(int value) { return setPicture(PictureProperty::Saturation, value); }
    bool setSharpness(int value) { return setPicture(PictureProperty::Sharpness, value); }

    /// The device path last given: of the video device for openDevice(), of the HID interface
    /// before initHid().
    void setCurrentDevicePath(const QString& path) { m_currentDevicePath = path; }
    [[nodiscard]] QString currentDevicePath() const { return m_currentDevicePath; }

    /// Opens the HID link to the current device path; a previous link is closed first.
    bool initHid();
    /// Closes the HID link, for example of a camera that is gone: as long as a handle is open, the
    /// system does not reuse the name of its interface.
    void closeHid();

    /// A setting of the camera; nothing when it does not answer or refuses.
    [[nodiscard]] std::optional<int> readSetting(DeviceSetting setting);
    /// Whether the last read over the HID link got no answer at all.
    [[nodiscard]] bool wasSilent() const { return m_hid && m_hid->wasSilent(); }
    /// @return false when the camera does not take the low 8 bits of @p value
    bool writeSetting(DeviceSetting setting, int value);

    /// Without a HID link the readers below give 0, empty text or false, the writers false.
    int getAutoFrameMode();
    int getFrameMaster();
    int getPickupSensitivity();
    int getAutoFrameSwitch();
    int getHorizontalMirror();
    int getCameraView(); ///< degrees
    QString getFirmwareVersion();
    QString getSerialNumber();
    bool getResolution(QMap<QString, int>& map);

    bool setAutoFrameMode(int value);
    bool setFrameMaster(int value);
    bool setPickupSensitivity(int value);
    bool setAutoFrameSwitch(int value);
    bool setHorizontalMirror(int value);
    bool setCameraView(int degrees);
    bool saveDeviceParam();

    /// Transfers a firmware image; see UVCHid::updateFile(). After initHid(); both may run on a
    /// worker thread when nothing else uses this object meanwhile.
    bool updateFile(const QString& path);

signals:
    /// A frame of the running preview; see SampleGrabberCallback::sigImage().
    void sigImage(QImage image);
    /// The running preview has ended with an error and was stopped.
    void sigCaptureFailed();

private:
    void endFailedCapture();
    [[nodiscard]] bool buildPreview(const QString& devicePath, WId window);
    void noteFailure();
    void releaseGraph();
    [[nodiscard]] VideoProcAmpRecord& record(PictureProperty property);
    void resetPicture();

    bool m_hasGraph = false; ///< whether the graph could be made
    bool m_opened = false;
    bool m_running = false;
    PreviewFailure m_failure;
    int m_width = 0;
    int m_height = 0;
    int m_screenColourDepth = 0;
    QString m_currentDevicePath;
    WId m_targetWindow = 0;
    QString m_picturePath; ///< the device that m_picture belongs to
    SampleGrabberCallback
        m_callback; ///< declared before the graph, which calls it until it is destroyed
    std::unique_ptr<CaptureGraph> m_graph;
    std::unique_ptr<VideoProcAmp> m_videoProcAmp;
    std::unique_ptr<UVCHid> m_hid;
    std::array<VideoProcAmpRecord, PictureSettings::kCount>
        m_picture; ///< as PictureSettings::rows()
};
