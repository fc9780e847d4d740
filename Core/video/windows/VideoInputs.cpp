#include "VideoInputs.h"

#include "ComMemory.h"

#include <oaidl.h>
#include <oleauto.h>
#include <strmif.h>
#include <uuids.h>

namespace {

/// A text that a property bag hands out.
class TextVariant
{
public:
    TextVariant()
    {
        ::VariantInit(&m_value);
        m_value.vt = VT_BSTR;
    }
    ~TextVariant() { ::VariantClear(&m_value); }
    TextVariant(const TextVariant&) = delete;
    TextVariant& operator=(const TextVariant&) = delete;

    [[nodiscard]] VARIANT* put() { return &m_value; }
    [[nodiscard]] std::optional<QString> text() const
    {
        if (m_value.vt != VT_BSTR)
            return std::nullopt;
        return QString::fromWCharArray(m_value.bstrVal,
                                       static_cast<int>(::SysStringLen(m_value.bstrVal)));
    }

private:
    VARIANT m_value{};
};

QString displayName(IMoniker* moniker)
{
    LPOLESTR name = nullptr;
    if (FAILED(moniker->GetDisplayName(nullptr, nullptr, &name)))
        return {};
    const ComText owned(name);
    return QString::fromWCharArray(name);
}

std::optional<QString> readText(IPropertyBag* bag, const wchar_t* name)
{
    TextVariant value;
    if (FAILED(bag->Read(name, value.put(), nullptr)))
        return std::nullopt;
    return value.text();
}

VideoDevices::Properties readProperties(IMoniker* moniker)
{
    VideoDevices::Properties properties;
    properties.displayName = displayName(moniker);
    ComPtr<IPropertyBag> bag;
    if (FAILED(moniker->BindToStorage(nullptr, nullptr, __uuidof(IPropertyBag), bag.putVoid())))
        return properties;
    properties.friendlyName = readText(bag.get(), L"FriendlyName");
    properties.devicePath = readText(bag.get(), L"DevicePath");
    return properties;
}

} // namespace

std::vector<VideoInput> listVideoInputs()
{
    ComPtr<ICreateDevEnum> system;
    if (FAILED(::CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER,
                                  __uuidof(ICreateDevEnum), system.putVoid())))
        return {};
    ComPtr<IEnumMoniker> monikers;
    // A category without devices is a success of its own, without an enumerator.
    if (system->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, monikers.put(), 0) != S_OK)
        return {};

    std::vector<VideoInput> inputs;
    monikers->Reset();
    for (;;) {
        ComPtr<IMoniker> moniker;
        if (monikers->Next(1, moniker.put(), nullptr) != S_OK)
            return inputs;
        VideoDevices::Properties properties = readProperties(moniker.get());
        inputs.push_back({std::move(moniker), std::move(properties)});
    }
}
