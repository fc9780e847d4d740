#include "LogLines.h"

#include "setLogObserver.h"

#include <algorithm>
#include <utility>

LogLines::LogLines()
{
    Brivane::setLogObserver(this);
}

LogLines::~LogLines()
{
    Brivane::setLogObserver(nullptr);
}

void LogLines::onPrintLog(std::int32_t level, std::string text)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.push_back({level, std::move(text)});
}

std::size_t LogLines::count() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines.size();
}

bool LogLines::contains(const std::string& text) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::any_of(m_lines.begin(), m_lines.end(), [&text](const Line& line) {
        return line.text.find(text) != std::string::npos;
    });
}

bool LogLines::containsLevel(std::int32_t level) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [level](const Line& line) { return line.level == level; });
}
