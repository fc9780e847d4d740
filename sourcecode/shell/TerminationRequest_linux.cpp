#include "TerminationRequest.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <QSocketNotifier>
#include <unistd.h>

namespace {

constexpr std::array<int, 3> kSignals{SIGTERM, SIGINT, SIGHUP};

/// The pipe that the signal handler writes to. A handler may call only few functions, see
/// signal-safety(7).
volatile std::sig_atomic_t s_writeEnd = -1;

extern "C" void noteSignal(int)
{
    const int before = errno;
    const char byte = 0;
    // If the pipe is full, the event loop has been notified already.
    [[maybe_unused]] const ssize_t written = write(s_writeEnd, &byte, 1);
    errno = before;
}

} // namespace

/// A pipe from the handler to the event loop.
class TerminationRequest::Watch
{
public:
    explicit Watch(TerminationRequest* request)
    {
        if (pipe2(m_ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            return;
        s_writeEnd = m_ends[1];
        m_notifier = std::make_unique<QSocketNotifier>(m_ends[0], QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, request, [this, request] {
            char byte = 0;
            while (read(m_ends[0], &byte, 1) > 0) {
            }
            emit request->requested();
        });
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        for (std::size_t i = 0; i < kSignals.size(); ++i)
            sigaction(kSignals[i], &action, &m_before[i]);
    }

    ~Watch()
    {
        if (!m_notifier)
            return;
        for (std::size_t i = 0; i < kSignals.size(); ++i)
            sigaction(kSignals[i], &m_before[i], nullptr);
        s_writeEnd = -1;
        m_notifier.reset();
        close(m_ends[0]);
        close(m_ends[1]);
    }

    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    std::array<int, 2> m_ends{-1, -1};
    std::array<struct sigaction, kSignals.size()> m_before = {};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

TerminationRequest::TerminationRequest(QObject* parent)
    : QObject(parent)
    , m_watch(std::make_unique<Watch>(this))
{
}

TerminationRequest::~TerminationRequest() = default;
