#include "SoftCamera.h"

#include "CameraFilter.h"
#include "windows/ComPtr.h"

#include <map>
#include <mutex>
#include <qt_windows.h>
#include <winreg.h>

namespace {

const QString kVideoInputs =
    QStringLiteral("CLSID\\{860BB310-5D01-11D0-BD3B-00A0C911CE86}\\Instance\\");
constexpr const wchar_t* kClassText = L"{0B7C2B4E-5E0D-4D7C-9A35-3F6D0C51A7E2}";

const wchar_t* wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

/// The registry key of a camera; the camera deletes it.
class RegistryKey
{
public:
    explicit RegistryKey(const QString& path)
    {
        m_created = ::RegCreateKeyExW(HKEY_CLASSES_ROOT, wide(path), 0, nullptr, 0, KEY_ALL_ACCESS,
                                      nullptr, &m_key, nullptr) == ERROR_SUCCESS;
    }
    ~RegistryKey()
    {
        if (m_created)
            ::RegCloseKey(m_key);
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    [[nodiscard]] bool isCreated() const { return m_created; }
    void setText(const wchar_t* name, const QString& text)
    {
        ::RegSetValueExW(m_key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.utf16()),
                         static_cast<DWORD>((text.size() + 1) * 2));
    }
    void setNumber(const wchar_t* name, int number)
    {
        const auto value = static_cast<DWORD>(number);
        ::RegSetValueExW(m_key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                         sizeof value);
    }

private:
    HKEY m_key = nullptr;
    bool m_created = false;
};

class Scripts
{
public:
    static Scripts& instance()
    {
        static Scripts scripts;
        return scripts;
    }
    int add(std::shared_ptr<CameraScript> script)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_scripts[++m_last] = std::move(script);
        return m_last;
    }
    void remove(int number)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_scripts.erase(number);
    }
    std::shared_ptr<CameraScript> find(int number)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_scripts.find(number);
        return found == m_scripts.end() ? nullptr : found->second;
    }

private:
    std::mutex m_mutex;
    std::map<int, std::shared_ptr<CameraScript>> m_scripts;
    int m_last = 0;
};

class CameraFactory final : public ComObject<IClassFactory>
{
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        const ComPtr<IBaseFilter> filter(new CameraFilter);
        return filter->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

} // namespace

SoftCamera::SoftCamera(const QString& instance, const std::optional<QString>& friendlyName,
                       const std::optional<QString>& devicePath)
    : m_key(kVideoInputs + instance)
    , m_script(std::make_shared<CameraScript>())
{
    m_number = Scripts::instance().add(m_script);
    RegistryKey key(m_key);
    if (!key.isCreated())
        return;
    key.setText(L"CLSID", QString::fromWCharArray(kClassText));
    key.setNumber(kNumberValue, m_number);
    if (friendlyName)
        key.setText(L"FriendlyName", *friendlyName);
    if (devicePath)
        key.setText(L"DevicePath", *devicePath);
    m_pluggedIn = true;
}

SoftCamera::~SoftCamera()
{
    if (m_pluggedIn)
        ::RegDeleteTreeW(HKEY_CLASSES_ROOT, wide(m_key));
    Scripts::instance().remove(m_number);
}

QString SoftCamera::supportedPath(int number)
{
    return QStringLiteral("\\\\?\\usb#vid_b206&pid_b215&mi_00#%1&0000#"
                          "{65e8773d-8f56-11d0-a3b9-00a0c9223196}\\global")
        .arg(number);
}

const CLSID& SoftCamera::classId()
{
    static const CLSID id = [] {
        CLSID parsed{};
        ::CLSIDFromString(kClassText, &parsed);
        return parsed;
    }();
    return id;
}

std::shared_ptr<CameraScript> SoftCamera::scriptOf(int number)
{
    return Scripts::instance().find(number);
}

SoftCameraClass::SoftCameraClass()
{
    const ComPtr<IClassFactory> factory(new CameraFactory);
    ::CoRegisterClassObject(SoftCamera::classId(), factory.get(), CLSCTX_INPROC_SERVER,
                            REGCLS_MULTIPLEUSE, &m_cookie);
}

SoftCameraClass::~SoftCameraClass()
{
    if (m_cookie != 0)
        ::CoRevokeClassObject(m_cookie);
}
