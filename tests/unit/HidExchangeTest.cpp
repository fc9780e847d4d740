#include "HidExchange.h"
#include "HidTest.h"

#include <algorithm>

namespace {

constexpr int kMirror = 0x5090;
constexpr int kHeader = 14;
const QByteArray kPath("/dev/hidraw4");

class HidExchangeTest : public HidTest
{
protected:
    void run()
    {
        exchange.run(kPath, HidFrame::packRequest(kMirror, HidFrame::ReadOrFinal, {}, 0), 3000,
                     HidExchange::WriteRule::MustSucceed);
    }

    /// Whether all bytes from @p offset on are zero.
    [[nodiscard]] bool isEmptyFrom(int offset) const
    {
        const HidFrame::Buffer& received = exchange.received();
        return std::all_of(received.begin() + offset, received.end(),
                           [](std::uint8_t byte) { return byte == 0; });
    }

    HidExchange exchange;
};

} // namespace

TEST_F(HidExchangeTest, ShortAnswerAfterALongOneShowsNothingOfIt)
{
    const QByteArray whole = ScriptedReply{QByteArray(1010, '\x55')}.report(kMirror);
    hidapi.queueAnswer(whole);
    run();
    ASSERT_EQ(exchange.readResult(), 1024);
    ASSERT_EQ(exchange.received().back(), 0x55);

    hidapi.queueAnswer(whole.left(kHeader));
    run();
    EXPECT_EQ(exchange.readResult(), kHeader);
    EXPECT_EQ(HidFrame::parseResponse(exchange.received()).cmd, kMirror);
    EXPECT_TRUE(isEmptyFrom(kHeader));
}

TEST_F(HidExchangeTest, TimeOutAfterAnAnswerShowsNothingOfIt)
{
    hidapi.queueAnswer(ScriptedReply{QByteArray(1010, '\x55')}.report(kMirror));
    run();
    hidapi.queueReadResult(0);
    run();
    EXPECT_EQ(exchange.readResult(), 0);
    EXPECT_TRUE(isEmptyFrom(0));
}
