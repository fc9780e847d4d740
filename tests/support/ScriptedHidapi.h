#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <string>
#include <vector>

struct hid_device_;
struct hid_device_info;

/// The answer of a scripted camera.
struct ScriptedReply
{
    QByteArray payload = {};
    std::uint32_t status = 0;
    /// The command in the answer; by default that of the request.
    std::optional<std::uint16_t> echo = std::nullopt;
    /// The payload length in the answer; by default the true one.
    std::optional<std::uint16_t> dataLen = std::nullopt;

    /// The whole report that answers @p cmd.
    [[nodiscard]] QByteArray report(std::uint16_t cmd) const;
};

/// Replaces the HID library: while an object exists, the hid_* functions of the test program follow
/// its script and record their calls. Without an object they find no device.
///
/// By default every path opens, every write accepts the whole report, and a read returns, in this
/// order, the next queued answer, the scripted reply to the last written frame, or a time-out
/// without waiting. Thread-safe. Only one object may exist at a time.
class ScriptedHidapi
{
public:
    /// One interface of the inventory.
    struct Interface
    {
        std::optional<QByteArray> path;
        unsigned short vendorId = 0;
        unsigned short productId = 0;
        std::optional<std::wstring> manufacturer = std::nullopt;
    };

    /// The strings of every device; reading a missing one fails.
    struct Strings
    {
        std::optional<std::wstring> manufacturer = std::nullopt;
        std::optional<std::wstring> product = std::nullopt;
        std::optional<std::wstring> serialNumber = std::nullopt;
        std::map<int, std::wstring> indexed = {};
    };

    ScriptedHidapi();
    ~ScriptedHidapi();
    ScriptedHidapi(const ScriptedHidapi&) = delete;
    ScriptedHidapi& operator=(const ScriptedHidapi&) = delete;

    /// Appends an interface to the inventory. Whether it can be opened is independent of that.
    void plugIn(const Interface& interface);
    void unplugAll();

    void setInitResult(int result);
    /// Decides which paths can be opened.
    void setOpenRule(std::function<bool(const QByteArray& path)> rule);
    /// The result of every write; with nullopt (the default) the write succeeds.
    void setWriteResult(std::optional<int> result);
    /// The library's text about its last failure.
    void setErrorText(std::optional<std::wstring> text);
    void setStrings(const Strings& strings);

    /// Queues a report for one read; the read returns its size.
    void queueAnswer(const QByteArray& report);
    /// Queues the result of a read without a report: 0 for a time-out, -1 for an error.
    void queueReadResult(int result);
    /// From now on @p reply answers every frame with @p cmd.
    void respondTo(std::uint16_t cmd, const ScriptedReply& reply);

    /// Every call so far in order, with its arguments: "hid_init()", "hid_open_path(/dev/hidraw0)",
    /// "hid_read_timeout(#1, 1024, 3000)". Handles are numbered from 1 in the order of opening.
    [[nodiscard]] QStringList calls() const;
    /// The written reports in order and in full length.
    [[nodiscard]] QList<QByteArray> writtenFrames() const;
    void forgetCalls();

    [[nodiscard]] int openHandles() const;
    /// Enumerations that were not freed.
    [[nodiscard]] int openEnumerations() const;
    /// hid_init() calls less hid_exit() calls.
    [[nodiscard]] int initBalance() const;
    /// Calls that the real library would have answered with undefined behaviour or lost data: a
    /// handle that is not open or belongs to another thread, a buffer too short for the report.
    [[nodiscard]] QStringList misuse() const;

    /// @name Called by the hid_* functions; see ScriptedHidapiFunctions.cpp
    /// @{
    static ScriptedHidapi* current();
    int init();
    int exit();
    hid_device_info* enumerate(unsigned short vendorId, unsigned short productId);
    void freeEnumeration(hid_device_info* list);
    hid_device_* open(unsigned short vendorId, unsigned short productId);
    hid_device_* openPath(const char* path);
    void close(hid_device_* device);
    int write(hid_device_* device, const unsigned char* data, std::size_t length);
    int read(const char* function, hid_device_* device, unsigned char* data, std::size_t length,
             std::optional<int> timeoutMs);
    int setNonblocking(hid_device_* device, int nonblock);
    const wchar_t* error(hid_device_* device);
    int manufacturerString(hid_device_* device, wchar_t* string, std::size_t size);
    int productString(hid_device_* device, wchar_t* string, std::size_t size);
    int serialNumberString(hid_device_* device, wchar_t* string, std::size_t size);
    int indexedString(hid_device_* device, int index, wchar_t* string, std::size_t size);
    /// Records a call of a function that has no script.
    int unsupported(const char* function, hid_device_* device);
    /// @}

private:
    struct Enumeration;
    struct ReadStep
    {
        int result = 0;
        QByteArray report;
    };

    void note(const QString& call);
    QString nameOf(const char* function, hid_device_* device);
    int copyString(const QString& call, const std::optional<std::wstring>& text, wchar_t* string,
                   std::size_t size);
    hid_device_* newHandle();
    ReadStep nextReadStep(hid_device_* device);

    mutable std::mutex m_mutex;
    std::vector<Interface> m_interfaces;
    int m_initResult = 0;
    std::function<bool(const QByteArray&)> m_openRule;
    std::optional<int> m_writeResult;
    std::optional<std::wstring> m_errorText;
    Strings m_strings;
    std::deque<ReadStep> m_reads;
    std::map<std::uint16_t, ScriptedReply> m_replies;

    QStringList m_calls;
    QList<QByteArray> m_writtenFrames;
    QStringList m_misuse;
    int m_initBalance = 0;
    std::vector<std::unique_ptr<hid_device_>>
        m_handles; ///< kept after closing, to detect later use
    std::map<hid_device_info*, std::unique_ptr<Enumeration>> m_enumerations;
};
