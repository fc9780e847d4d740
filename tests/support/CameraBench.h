#pragma once

#include "ScriptedHidapi.h"
#include "ScriptedVideo.h"
#include "UVCDeviceInfo.h"

#include <QList>
#include <QString>
#include <set>

/// Cameras that are plugged in for the length of a test: each has a control interface and a video
/// device, numbered from 0, and answers that it is connected.
class CameraBench
{
public:
    /// @param cameras how many are plugged in from the start
    explicit CameraBench(int cameras = 0);

    /// Leaves exactly so many cameras plugged in, each whole.
    void plugIn(int cameras);
    /// Leaves so many control interfaces and so many video devices plugged in.
    void plugInParts(int hidInterfaces, int videoDevices);
    /// The control interface of camera @p number does not open from now on.
    void refuse(int number);

    void setVersion(const QByteArray& numbers);
    void setSerialNumber(const QByteArray& serial);
    /// What the camera tells about its stream.
    void setStream(int width, int height, int streaming);

    [[nodiscard]] static QString hidPath(int number);
    [[nodiscard]] static QString videoPath(int number);
    /// What an enumeration of the video devices finds.
    [[nodiscard]] static QList<UVCDeviceInfo> videoDevices();

    [[nodiscard]] ScriptedHidapi& hidapi() { return m_hidapi; }
    [[nodiscard]] ScriptedVideo& video() { return m_video; }

private:
    ScriptedHidapi m_hidapi;
    ScriptedVideo m_video;
    std::set<QByteArray> m_refused;
};
