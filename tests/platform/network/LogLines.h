#pragma once

#include "ILogObserver.h"

#include <mutex>
#include <string>
#include <vector>

/// Records the library's log lines while it exists.
class LogLines : public Brivane::ILogObserver
{
public:
    LogLines();
    ~LogLines() override;

    void onPrintLog(std::int32_t level, std::string text) override;

    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] bool contains(const std::string& text) const;
    [[nodiscard]] bool containsLevel(std::int32_t level) const;

private:
    struct Line
    {
        std::int32_t level;
        std::string text;
    };

    mutable std::mutex m_mutex;
    std::vector<Line> m_lines;
};
