#include "HidDiagnostics.h"

#include "HidApi.h"
#include "HidFrame.h"
#include "LogCategories.h"

#include <algorithm>
#include <cwchar>

namespace {

constexpr std::size_t kMaxString = 255;
constexpr int kReadTimeoutMs = 20;
constexpr int kLoggedBytes = 4;
constexpr int kFirstString = 1;

using WideString = std::array<wchar_t, kMaxString>;

QString textOf(const WideString& string)
{
    return QString::fromWCharArray(string.data(),
                                   static_cast<int>(wcsnlen(string.data(), kMaxString)));
}

template <typename Read>
QString readString(Read read)
{
    WideString string{};
    return read(string.data(), string.size()) < 0 ? QString() : textOf(string);
}

} // namespace

void HidDiagnostics::logIdentity(const QString& path)
{
    const HidLibrary library;
    const HidHandle handle = HidApi::open(path.toUtf8().constData());
    if (!handle)
        return;
    hid_device* device = handle.get();

    const QString manufacturer = readString([device](wchar_t* text, std::size_t size) {
        return hid_get_manufacturer_string(device, text, size);
    });
    qCDebug(hidLog).noquote() << QStringLiteral("Manufacturer String: %1").arg(manufacturer);
    const QString product = readString([device](wchar_t* text, std::size_t size) {
        return hid_get_product_string(device, text, size);
    });
    qCDebug(hidLog).noquote() << QStringLiteral("Product String: %1").arg(product);
    const QString serial = readString([device](wchar_t* text, std::size_t size) {
        return hid_get_serial_number_string(device, text, size);
    });
    const int firstCharacter = serial.isEmpty() ? 0 : serial.at(0).unicode();
    qCDebug(hidLog).noquote()
        << QStringLiteral("Serial Number String: (%1) %2").arg(firstCharacter).arg(serial);
    const QString indexed = readString([device](wchar_t* text, std::size_t size) {
        return hid_get_indexed_string(device, kFirstString, text, size);
    });
    qCDebug(hidLog).noquote() << QStringLiteral("Indexed String 1: %1").arg(indexed);

    HidFrame::Buffer report{};
    const int count = hid_read_timeout(device, report.data(), report.size(), kReadTimeoutMs);
    for (int i = 0; i < std::min(count, kLoggedBytes); ++i)
        qCDebug(hidLog, "buf[%d]: %d\n", i, report[static_cast<std::size_t>(i)]);
}
