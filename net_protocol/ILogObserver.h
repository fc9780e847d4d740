#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace Brivane {

/// Receives the library's log lines.
class ILogObserver
{
public:
    enum Level : std::int32_t { Debug = 0, Info = 1, Warning = 2, Error = 3 };

    /// One line of UTF-8 text without a line feed. Called for one line at a time, on the thread
    /// that logs it, mostly that of a client. It must not wait for a thread that calls
    /// setLogObserver().
    virtual void onPrintLog(std::int32_t level, std::string text) = 0;
    /// Lines below this level are dropped from now on. The library's interface has it, although the
    /// program never calls it. Any thread.
    virtual void setLogLevel(std::int32_t level);
    [[nodiscard]] std::int32_t getLogLevel() const;

    // Declared last, so that the operations keep their positions in the table of virtual functions.
    virtual ~ILogObserver();

protected:
    ILogObserver();
    ILogObserver(const ILogObserver&) = delete;
    ILogObserver& operator=(const ILogObserver&) = delete;

private:
    std::atomic<std::int32_t> m_level{Debug};
};

} // namespace Brivane
