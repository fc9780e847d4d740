#pragma once

#include "SampleGrabberCallback.h"
#include "UVCDeviceInfo.h"
#include "UVCHid.h"
#include "VideoProcAmp.h"

#include <memory>
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
/// Lives on the GUI thread, where every operation but updateFile() runs. The preview and the HID
/// link are independent of each other; both are pointed at a camera through setCurrentDevicePath().
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
    /// @p window. A preview that was built before is given up.
    /// @return false when there is no such device or its preview cannot be built. True with nothing
    ///         built on a screen whose colour depth no preview format fits.
    bool openDevice(const QString& devicePath, WId window);
    /// Shows and runs the preview.
    /// @return false when none is built or the camera does not stream
    bool startCapture();
    void stopCapture();
    /// Gives the preview up.
    void closeDevice();

    [[nodiscard]] bool isOpened() const { return m_opened; }
    [[nodiscard]] bool isRunning() const { return m_running; }
    [[nodiscard]] bool isGraphBuilt() const { return m_graphBuilt; }
    /// Negotiated size of the frames.
    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }

    /// Gives access to the picture properties of the device that openDevice() bound.
    void initVideoProcAmp();

    /// Current values in the camera's own units; the stored value when the camera does not answer.
    int getBright();
    int getContrast();
    int getSaturation();
    int getSharpness();

    /// Minimum and maximum in the camera's own units; (0, 0) when the camera does not answer.
    QPair<int, int> getBrightRange();
    QPair<int, int> getContrastRange();
    QPair<int, int> getSaturationRange();
    QPair<int, int> getSharpnessRange();

    /// @return false, with the stored value unchanged, when the camera refuses or has no such
    ///         property
    bool setBright(int value);
    bool setContrast(int value);
    bool setSaturation(int value);
    bool setSharpness(int value);

    /// The device path last given: of the video device for openDevice(), of the HID interface
    /// before initHid().
    void setCurrentDevicePath(const QString& path) { m_currentDevicePath = path; }
    [[nodiscard]] QString currentDevicePath() const { return m_currentDevicePath; }

    /// Opens the HID link to the current device path; a previous link is closed first.
    bool initHid();
    /// Closes the HID link, for example of a camera that is gone: as long as a handle is open, the
    /// system does not give its interface's name away again.
    void closeHid();

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

private:
    void releaseGraph();
    int currentValue(VideoProcAmpRecord& record);
    QPair<int, int> range(VideoProcAmpRecord& record);
    bool setValue(VideoProcAmpRecord& record, int value);
    int readSetting(int cmd);
    bool writeSetting(int value, int cmd);

    bool m_opened = false;
    bool m_running = false;
    bool m_graphBuilt = false;
    int m_width = 0;
    int m_height = 0;
    int m_screenColourDepth = 0;
    QString m_currentDevicePath;
    WId m_targetWindow = 0;
    SampleGrabberCallback
        m_callback; ///< declared before the graph: the graph calls it till its end
    std::unique_ptr<CaptureGraph> m_graph;
    std::unique_ptr<VideoProcAmp> m_videoProcAmp;
    std::unique_ptr<UVCHid> m_hid;
    VideoProcAmpRecord m_brightness{PictureProperty::Brightness};
    VideoProcAmpRecord m_contrast{PictureProperty::Contrast};
    VideoProcAmpRecord m_saturation{PictureProperty::Saturation};
    VideoProcAmpRecord m_sharpness{PictureProperty::Sharpness};
};
