#pragma once

#include "ScriptedHidapi.h"
#include "ScriptedVideo.h"
#include "UVCDeviceInfo.h"

#include <QList>
#include <QString>
#include <set>

/// Cameras that are plugged in for the length of a test: each has a control interface and a video
/// device, numbered from 0, and answers that it is connected.
class ScriptedCameras
{
public:
    /// @param cameras how many are plugged in from the start
    explicit ScriptedCameras(int cameras = 0);

    /// Changes the number of plugged-in cameras; each has both interfaces.
    void plugIn(int cameras);
    /// Changes the numbers of plugged-in control interfaces and video devices.
    void plugInParts(int hidInterfaces, int videoDevices);
    /// Camera @p number is plugged in and no other one.
    void plugInOnly(int number);
    /// From now on the control interface of camera @p number cannot be opened.
    void refuse(int number);

    void setVersion(const QByteArray& numbers);
    void setSerialNumber(const QByteArray& serial);
    /// Version, serial number, settings and picture values are answered; a camera that answers
    /// nothing is not read any further after two reads.
    void answerAll();
    /// The camera's answer about its stream.
    void setStream(int width, int height, int streaming);

    [[nodiscard]] static QString hidPath(int number);
    [[nodiscard]] static QString videoPath(int number);
    /// The result of an enumeration of the video devices.
    [[nodiscard]] static QList<UVCDeviceInfo> videoDevices();

    [[nodiscard]] ScriptedHidapi& hidapi() { return m_hidapi; }
    [[nodiscard]] ScriptedVideo& video() { return m_video; }

private:
    void addHidInterface(int number);
    void addVideoDevice(int number);

    ScriptedHidapi m_hidapi;
    ScriptedVideo m_video;
    std::set<QByteArray> m_refused;
};
