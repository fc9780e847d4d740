#include "SleepInhibitor.h"

#include <gtest/gtest.h>
#include <qt_windows.h>

namespace {

/// The thread's current request to the system; reading it sets the same request again.
EXECUTION_STATE requested()
{
    const EXECUTION_STATE before = ::SetThreadExecutionState(ES_CONTINUOUS);
    ::SetThreadExecutionState(before | ES_CONTINUOUS);
    return before;
}

} // namespace

TEST(SleepInhibitor, SystemStaysAwakeWhileItExists)
{
    ::SetThreadExecutionState(ES_CONTINUOUS);
    {
        const SleepInhibitor inhibitor(QStringLiteral("why"));
        EXPECT_NE(requested() & ES_SYSTEM_REQUIRED, 0U);
        EXPECT_EQ(requested() & ES_DISPLAY_REQUIRED, 0U);
    }
    EXPECT_EQ(requested() & ES_SYSTEM_REQUIRED, 0U);
}
