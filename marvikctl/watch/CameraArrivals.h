#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <QString>

/// Reports control interfaces that come and go, of cameras and of others. Events are queued from
/// the construction on. Defined in CameraArrivals_<platform>.cpp.
class CameraArrivals
{
public:
    struct Event
    {
        enum class Kind { Arrived, Left, Stopped, TimedOut, Failed };
        Kind kind = Kind::Failed;
        QString path; ///< of the interface; empty when it was stopped or has failed
    };

    CameraArrivals();
    ~CameraArrivals();
    CameraArrivals(const CameraArrivals&) = delete;
    CameraArrivals& operator=(const CameraArrivals&) = delete;

    [[nodiscard]] bool isOpen() const;
    /// Blocks until something happens. An interface that has arrived can be used.
    /// @param timeout without a value for ever
    [[nodiscard]] Event wait(std::optional<std::chrono::milliseconds> timeout = {});
    /// Ends a wait() that is under way or to come. Any thread, and a signal handler.
    void stop();

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};
