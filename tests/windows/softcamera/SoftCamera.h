#pragma once

#include "CameraScript.h"
#include "windows/ComApartment.h"

#include <guiddef.h>
#include <memory>
#include <optional>
#include <QString>

/// A camera made of software among the system's video inputs, for this object's lifetime: the real
/// enumerator lists it, real graphs stream it. Its filters run in this process.
///
/// On Windows the list of video inputs is the administrator's, so tests that plug one in are run as
/// one.
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

    /// A real camera's path of a supported model.
    [[nodiscard]] static QString supportedPath(int number);

    [[nodiscard]] bool isPluggedIn() const { return m_pluggedIn; }
    CameraScript& script() { return *m_script; }

    [[nodiscard]] static const CLSID& classId();
    /// The device property that numbers the script.
    static constexpr const wchar_t* kNumberValue = L"SoftCameraNumber";
    /// Null for a camera that is gone.
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
