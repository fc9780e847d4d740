#pragma once

#include "CameraScript.h"
#include "windows/ComApartment.h"

#include <guiddef.h>
#include <memory>
#include <optional>
#include <QString>

/// A software camera that is one of the system's video inputs during this object's lifetime: the
/// real enumerator lists it, and real graphs stream from it. Its filters run in this process.
///
/// On Windows only an administrator can change the list of video inputs, so tests that plug one in
/// must run as administrator.
class SoftCamera
{
public:
    /// @param instance name of the registry key; devices are listed in the order of these names
    /// @param friendlyName, devicePath left out of the device's properties when empty
    SoftCamera(const QString& instance, const std::optional<QString>& friendlyName,
               const std::optional<QString>& devicePath);
    ~SoftCamera();
    SoftCamera(const SoftCamera&) = delete;
    SoftCamera& operator=(const SoftCamera&) = delete;

    /// The device path of a real camera of a supported model.
    [[nodiscard]] static QString supportedPath(int number);

    [[nodiscard]] bool isPluggedIn() const { return m_pluggedIn; }
    CameraScript& script() { return *m_script; }

    [[nodiscard]] static const CLSID& classId();
    /// The device property that numbers the script.
    static constexpr const wchar_t* kNumberValue = L"SoftCameraNumber";
    /// Null when the camera was unplugged.
    [[nodiscard]] static std::shared_ptr<CameraScript> scriptOf(int number);

private:
    ComApartment m_com;
    QString m_key;
    int m_number;
    std::shared_ptr<CameraScript> m_script;
    bool m_pluggedIn = false;
};

/// Serves the filters of software cameras in this process, for this object's lifetime.
class SoftCameraClass
{
public:
    SoftCameraClass();
    ~SoftCameraClass();
    SoftCameraClass(const SoftCameraClass&) = delete;
    SoftCameraClass& operator=(const SoftCameraClass&) = delete;

    [[nodiscard]] bool isServed() const { return m_cookie != 0; }

private:
    ComApartment m_com;
    DWORD m_cookie = 0;
};
