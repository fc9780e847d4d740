#pragma once

#include <functional>

/// Notices that the user or the system wants the program to end, instead of ending it at once.
/// There may be one object at a time. Defined in StopRequest_<platform>.cpp.
class StopRequest
{
public:
    /// @param onStop called once for each request, on Linux inside a signal handler: it may call
    /// only
    ///        what signal-safety(7) allows
    explicit StopRequest(std::function<void()> onStop = {});
    ~StopRequest();
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;

    /// Whether there was a request. Any thread.
    [[nodiscard]] bool isMade() const;

private:
    std::function<void()> m_onStop;
};
