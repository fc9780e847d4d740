#include "AnswerClock.h"

#include <dlfcn.h>
#include <hidapi/hidapi.h>

namespace {

AnswerClock::Clock::time_point& lastAnswer()
{
    static AnswerClock::Clock::time_point time;
    return time;
}

} // namespace

AnswerClock::Clock::time_point AnswerClock::last()
{
    return lastAnswer();
}

int hid_read_timeout(hid_device* device, unsigned char* data, std::size_t length, int milliseconds)
{
    static const auto real =
        reinterpret_cast<decltype(&hid_read_timeout)>(::dlsym(RTLD_NEXT, "hid_read_timeout"));
    const int result = real(device, data, length, milliseconds);
    lastAnswer() = AnswerClock::Clock::now();
    return result;
}
