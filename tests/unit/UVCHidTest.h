#pragma once

#include "HidTest.h"
#include "UVCHid.h"

/// A link to a camera that is plugged in; its persistent handle is number 1, so the first exchange
/// has number 2.
class UVCHidTest : public HidTest
{
protected:
    static constexpr const char* kPath = "/dev/hidraw4";

    void SetUp() override
    {
        hidapi.plugIn(camera(kPath));
        ASSERT_TRUE(hid->createHandleWithPath(QString::fromUtf8(kPath)));
        hidapi.forgetCalls();
        log.clear();
    }

    void TearDown() override
    {
        // After an exchange only the persistent handle is open.
        EXPECT_EQ(hidapi.openHandles(), hid ? 1 : 0);
        hid.reset();
        HidTest::TearDown();
    }

    /// The library calls of one exchange that reached the read step.
    static QStringList exchangeCalls(int timeoutMs, bool asksForError = false)
    {
        QStringList calls{QStringLiteral("hid_init()"),
                          QStringLiteral("hid_open_path(%1)").arg(QLatin1String(kPath)),
                          QStringLiteral("hid_write(#2, 1024)"),
                          QStringLiteral("hid_read_timeout(#2, 1024, %1)").arg(timeoutMs)};
        if (asksForError)
            calls << QStringLiteral("hid_error(#2)");
        return calls << QStringLiteral("hid_close(#2)") << QStringLiteral("hid_exit()");
    }

    static QStringList refusedWriteCalls()
    {
        return {QStringLiteral("hid_init()"),
                QStringLiteral("hid_open_path(%1)").arg(QLatin1String(kPath)),
                QStringLiteral("hid_write(#2, 1024)"),
                QStringLiteral("hid_error(#2)"),
                QStringLiteral("hid_close(#2)"),
                QStringLiteral("hid_exit()")};
    }

    static QStringList refusedOpenCalls()
    {
        return {QStringLiteral("hid_init()"),
                QStringLiteral("hid_open_path(%1)").arg(QLatin1String(kPath)),
                QStringLiteral("hid_exit()")};
    }

    void refuseOpening()
    {
        hidapi.setOpenRule([](const QByteArray&) { return false; });
    }

    std::unique_ptr<UVCHid> hid = std::make_unique<UVCHid>();
};

/// Status values of a refusal: any of the four bytes may be set.
inline const auto kRefusals =
    ::testing::Values(1U, 0x80U, 0x100U, 0x10000U, 0x1000000U, 0xFFFFFFFFU);
