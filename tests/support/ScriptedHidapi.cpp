#include "ScriptedHidapi.h"

#include <algorithm>
#include <cstring>
#include <hidapi/hidapi.h>
#include <thread>

struct hid_device_
{
    int number = 0;
    bool isOpen = true;
    std::thread::id thread = std::this_thread::get_id(); ///< that opened it
    std::optional<QByteArray> unanswered;                ///< the frame written last
};

struct ScriptedHidapi::Enumeration
{
    explicit Enumeration(std::vector<Interface> list)
        : interfaces(std::move(list))
    {
        nodes.resize(interfaces.size());
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            nodes[i] = hid_device_info{};
            if (interfaces[i].path)
                nodes[i].path = interfaces[i].path->data();
            nodes[i].vendor_id = interfaces[i].vendorId;
            nodes[i].product_id = interfaces[i].productId;
            if (interfaces[i].manufacturer)
                nodes[i].manufacturer_string = interfaces[i].manufacturer->data();
            nodes[i].next = i + 1 < nodes.size() ? &nodes[i + 1] : nullptr;
        }
    }

    std::vector<Interface> interfaces;
    std::vector<hid_device_info> nodes;
};

namespace {

ScriptedHidapi* s_current = nullptr;

constexpr std::size_t kCommandOffset = 3;
constexpr int kReportSize = 1024;
constexpr int kHeaderSize = 14;

void putLittleEndian(QByteArray& report, int offset, std::uint32_t value, int size)
{
    for (int i = 0; i < size; ++i)
        report[offset + i] = static_cast<char>((value >> (8 * i)) & 0xFFU);
}

std::optional<std::uint16_t> commandOf(const QByteArray& frame)
{
    if (static_cast<std::size_t>(frame.size()) < kCommandOffset + 2)
        return std::nullopt;
    const auto* bytes = reinterpret_cast<const unsigned char*>(frame.constData());
    return static_cast<std::uint16_t>(bytes[kCommandOffset] | (bytes[kCommandOffset + 1] << 8));
}

} // namespace

QByteArray ScriptedReply::report(std::uint16_t cmd) const
{
    Q_ASSERT(payload.size() <= kReportSize - kHeaderSize);
    QByteArray result(kReportSize, '\0');
    putLittleEndian(result, 0, 0x01, 1);
    putLittleEndian(result, 1, 0x5A5A, 2);
    putLittleEndian(result, 3, echo.value_or(cmd), 2);
    putLittleEndian(result, 5, 0x02, 1);
    putLittleEndian(result, 6, dataLen.value_or(static_cast<std::uint16_t>(payload.size())), 2);
    putLittleEndian(result, 8, status, 4);
    // The checksum of an answer is not checked: bytes 12 and 13 stay zero.
    result.replace(kHeaderSize, payload.size(), payload);
    return result;
}

ScriptedHidapi::ScriptedHidapi()
    : m_openRule([](const QByteArray&) { return true; })
{
    Q_ASSERT(!s_current);
    s_current = this;
}

ScriptedHidapi::~ScriptedHidapi()
{
    s_current = nullptr;
}

ScriptedHidapi* ScriptedHidapi::current()
{
    return s_current;
}

void ScriptedHidapi::plugIn(const Interface& interface)
{
    const std::lock_guard lock(m_mutex);
    m_interfaces.push_back(interface);
}

void ScriptedHidapi::unplugAll()
{
    const std::lock_guard lock(m_mutex);
    m_interfaces.clear();
}

void ScriptedHidapi::setInitResult(int result)
{
    const std::lock_guard lock(m_mutex);
    m_initResult = result;
}

void ScriptedHidapi::setOpenRule(std::function<bool(const QByteArray&)> rule)
{
    const std::lock_guard lock(m_mutex);
    m_openRule = std::move(rule);
}

void ScriptedHidapi::setWriteResult(std::optional<int> result)
{
    const std::lock_guard lock(m_mutex);
    m_writeResult = result;
}

void ScriptedHidapi::setErrorText(std::optional<std::wstring> text)
{
    const std::lock_guard lock(m_mutex);
    m_errorText = std::move(text);
}

void ScriptedHidapi::setStrings(const Strings& strings)
{
    const std::lock_guard lock(m_mutex);
    m_strings = strings;
}

void ScriptedHidapi::queueAnswer(const QByteArray& report)
{
    const std::lock_guard lock(m_mutex);
    m_reads.push_back({report.size(), report});
}

void ScriptedHidapi::queueReadResult(int result)
{
    const std::lock_guard lock(m_mutex);
    m_reads.push_back({result, {}});
}

void ScriptedHidapi::respondTo(std::uint16_t cmd, const ScriptedReply& reply)
{
    const std::lock_guard lock(m_mutex);
    m_replies[cmd] = reply;
}

QStringList ScriptedHidapi::calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

QList<QByteArray> ScriptedHidapi::writtenFrames() const
{
    const std::lock_guard lock(m_mutex);
    return m_writtenFrames;
}

void ScriptedHidapi::forgetCalls()
{
    const std::lock_guard lock(m_mutex);
    m_calls.clear();
    m_writtenFrames.clear();
}

int ScriptedHidapi::openHandles() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(std::count_if(m_handles.begin(), m_handles.end(),
                                          [](const auto& handle) { return handle->isOpen; }));
}

int ScriptedHidapi::openEnumerations() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_enumerations.size());
}

int ScriptedHidapi::initBalance() const
{
    const std::lock_guard lock(m_mutex);
    return m_initBalance;
}

QStringList ScriptedHidapi::misuse() const
{
    const std::lock_guard lock(m_mutex);
    return m_misuse;
}

void ScriptedHidapi::note(const QString& call)
{
    m_calls << call;
}

/// The start of a call's text, up to its handle; records misuse when the handle is closed.
QString ScriptedHidapi::nameOf(const char* function, hid_device_* device)
{
    const QString name = QString::fromLatin1(function);
    if (!device) {
        m_misuse << name + QStringLiteral(" without a device");
        return name + QStringLiteral("(null");
    }
    if (!device->isOpen)
        m_misuse << name + QStringLiteral(" on a closed device");
    if (device->thread != std::this_thread::get_id())
        m_misuse << name + QStringLiteral(" on another thread than the device was opened on");
    return name + QStringLiteral("(#%1").arg(device->number);
}

hid_device_* ScriptedHidapi::newHandle()
{
    auto handle = std::make_unique<hid_device_>();
    handle->number = static_cast<int>(m_handles.size()) + 1;
    m_handles.push_back(std::move(handle));
    return m_handles.back().get();
}

int ScriptedHidapi::init()
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("hid_init()"));
    ++m_initBalance;
    return m_initResult;
}

int ScriptedHidapi::exit()
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("hid_exit()"));
    --m_initBalance;
    return 0;
}

hid_device_info* ScriptedHidapi::enumerate(unsigned short vendorId, unsigned short productId)
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("hid_enumerate(%1, %2)").arg(vendorId).arg(productId));
    std::vector<Interface> matching;
    for (const Interface& interface : m_interfaces) {
        if ((vendorId == 0 || vendorId == interface.vendorId) &&
            (productId == 0 || productId == interface.productId))
            matching.push_back(interface);
    }
    if (matching.empty())
        return nullptr;
    auto enumeration = std::make_unique<Enumeration>(std::move(matching));
    hid_device_info* head = enumeration->nodes.data();
    m_enumerations[head] = std::move(enumeration);
    return head;
}

void ScriptedHidapi::freeEnumeration(hid_device_info* list)
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("hid_free_enumeration()"));
    if (list && m_enumerations.erase(list) == 0)
        m_misuse << QStringLiteral("hid_free_enumeration of a list that is not taken");
}

hid_device_* ScriptedHidapi::open(unsigned short vendorId, unsigned short productId)
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("hid_open(%1, %2)").arg(vendorId).arg(productId));
    for (const Interface& interface : m_interfaces) {
        if (interface.vendorId == vendorId && interface.productId == productId)
            return m_openRule(interface.path.value_or(QByteArray())) ? newHandle() : nullptr;
    }
    return nullptr;
}

hid_device_* ScriptedHidapi::openPath(const char* path)
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("hid_open_path(%1)").arg(QString::fromUtf8(path)));
    return m_openRule(QByteArray(path)) ? newHandle() : nullptr;
}

void ScriptedHidapi::close(hid_device_* device)
{
    const std::lock_guard lock(m_mutex);
    // The real function accepts a null handle.
    note(device ? nameOf("hid_close", device) + QLatin1Char(')')
                : QStringLiteral("hid_close(null)"));
    if (device)
        device->isOpen = false;
}

int ScriptedHidapi::write(hid_device_* device, const unsigned char* data, std::size_t length)
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("%1, %2)").arg(nameOf("hid_write", device)).arg(length));
    if (!device || !data || length == 0) {
        m_misuse << QStringLiteral("hid_write of nothing");
        return -1;
    }
    const QByteArray frame(reinterpret_cast<const char*>(data), static_cast<int>(length));
    m_writtenFrames << frame;
    if (m_writeResult)
        return *m_writeResult;
    device->unanswered = frame;
    return static_cast<int>(length);
}

ScriptedHidapi::ReadStep ScriptedHidapi::nextReadStep(hid_device_* device)
{
    if (!m_reads.empty()) {
        ReadStep step = m_reads.front();
        m_reads.pop_front();
        device->unanswered.reset();
        return step;
    }
    if (!device->unanswered)
        return {};
    const std::optional<std::uint16_t> cmd = commandOf(*device->unanswered);
    device->unanswered.reset();
    const auto reply = cmd ? m_replies.find(*cmd) : m_replies.end();
    if (reply == m_replies.end())
        return {};
    const QByteArray report = reply->second.report(*cmd);
    return {report.size(), report};
}

int ScriptedHidapi::read(const char* function, hid_device_* device, unsigned char* data,
                         std::size_t length, std::optional<int> timeoutMs)
{
    const std::lock_guard lock(m_mutex);
    QString call = QStringLiteral("%1, %2").arg(nameOf(function, device)).arg(length);
    if (timeoutMs)
        call += QStringLiteral(", %1").arg(*timeoutMs);
    note(call + QLatin1Char(')'));
    if (!device || !data) {
        m_misuse << QStringLiteral("%1 without a buffer").arg(QLatin1String(function));
        return -1;
    }

    const ReadStep step = nextReadStep(device);
    const auto size = static_cast<std::size_t>(step.report.size());
    if (size > length)
        m_misuse << QStringLiteral("%1 of %2 bytes into %3")
                        .arg(QLatin1String(function))
                        .arg(size)
                        .arg(length);
    const std::size_t copied = std::min(size, length);
    std::memcpy(data, step.report.constData(), copied);
    return size > length ? static_cast<int>(copied) : step.result;
}

int ScriptedHidapi::setNonblocking(hid_device_* device, int nonblock)
{
    const std::lock_guard lock(m_mutex);
    note(QStringLiteral("%1, %2)").arg(nameOf("hid_set_nonblocking", device)).arg(nonblock));
    return 0;
}

const wchar_t* ScriptedHidapi::error(hid_device_* device)
{
    const std::lock_guard lock(m_mutex);
    // Without a device the function reports the error of the last open.
    note(device ? nameOf("hid_error", device) + QLatin1Char(')')
                : QStringLiteral("hid_error(null)"));
    return m_errorText ? m_errorText->c_str() : nullptr;
}

/// Like the real functions, which leave a text that fills the buffer without a terminating zero.
int ScriptedHidapi::copyString(const QString& call, const std::optional<std::wstring>& text,
                               wchar_t* string, std::size_t size)
{
    note(QStringLiteral("%1, %2)").arg(call).arg(size));
    if (!text || size == 0)
        return -1;
    std::copy_n(text->c_str(), std::min(text->size() + 1, size), string);
    return 0;
}

int ScriptedHidapi::manufacturerString(hid_device_* device, wchar_t* string, std::size_t size)
{
    const std::lock_guard lock(m_mutex);
    return copyString(nameOf("hid_get_manufacturer_string", device), m_strings.manufacturer, string,
                      size);
}

int ScriptedHidapi::productString(hid_device_* device, wchar_t* string, std::size_t size)
{
    const std::lock_guard lock(m_mutex);
    return copyString(nameOf("hid_get_product_string", device), m_strings.product, string, size);
}

int ScriptedHidapi::serialNumberString(hid_device_* device, wchar_t* string, std::size_t size)
{
    const std::lock_guard lock(m_mutex);
    return copyString(nameOf("hid_get_serial_number_string", device), m_strings.serialNumber,
                      string, size);
}

int ScriptedHidapi::indexedString(hid_device_* device, int index, wchar_t* string, std::size_t size)
{
    const std::lock_guard lock(m_mutex);
    const auto known = m_strings.indexed.find(index);
    const QString call =
        QStringLiteral("%1, %2").arg(nameOf("hid_get_indexed_string", device)).arg(index);
    return copyString(
        call, known == m_strings.indexed.end() ? std::nullopt : std::optional(known->second),
        string, size);
}

int ScriptedHidapi::unsupported(const char* function, hid_device_* device)
{
    const std::lock_guard lock(m_mutex);
    note(nameOf(function, device) + QLatin1Char(')'));
    return -1;
}
