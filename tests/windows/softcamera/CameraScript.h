#pragma once

#include "PictureFormat.h"

#include <array>
#include <atomic>
#include <mutex>
#include <QSize>
#include <vector>

/// The script of a software camera, and its recorded calls. Shared by the test and the camera's
/// filters, which run on several threads.
struct CameraScript
{
    struct Write
    {
        long property;
        long value;
        long flags;
    };

    // Set before the camera is used.
    QSize size{320, 240};
    bool topDown = false;
    std::vector<GUID> subtypes = PictureFormat::all();
    bool hasAmplifier = true;
    bool reportsRefusal = false; ///< makes a refusal of Pause reach the caller; see RefusalFilter

    // Results that it returns instead of success.
    std::atomic<HRESULT> bindResult{S_OK};
    std::atomic<HRESULT> pauseResult{S_OK};

    // Recorded calls.
    std::atomic<int> binds{0};
    std::atomic<int> filtersAlive{0};
    std::atomic<int> streamsAlive{0};
    std::atomic<int> framesTaken{0};

    [[nodiscard]] GUID requestedSubtype() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_requestedSubtype;
    }
    void noteConnection(const GUID& subtype)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requestedSubtype = subtype;
    }
    [[nodiscard]] std::vector<Write> writes() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_writes;
    }
    void noteWrite(const Write& write)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_writes.push_back(write);
    }

private:
    mutable std::mutex m_mutex;
    GUID m_requestedSubtype{};
    std::vector<Write> m_writes;
};
