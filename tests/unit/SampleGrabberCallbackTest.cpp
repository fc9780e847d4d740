#include "SampleGrabberCallback.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

struct Received
{
    int count = 0;
    QSize size;
    QImage::Format format = QImage::Format_Invalid;
    int bytesPerLine = 0;
    const uchar* bits = nullptr;
    QRgb corner = 0;
    std::thread::id thread;
};

class SampleGrabberCallbackTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        callback.setFrameSize({4, 3});
        QObject::connect(&callback, &SampleGrabberCallback::sigImage, [this](const QImage& image) {
            ++received.count;
            received.size = image.size();
            received.format = image.format();
            received.bytesPerLine = image.bytesPerLine();
            received.bits = image.constBits();
            received.corner = image.isNull() ? 0 : image.pixel(image.width() - 1, 0);
            received.thread = std::this_thread::get_id();
        });
    }

    bool deliver(std::size_t length)
    {
        return callback.bufferCallback(0.5, buffer.data(), static_cast<long>(length));
    }

    static constexpr std::size_t kFrameBytes = std::size_t{4} * 3 * 4;

    SampleGrabberCallback callback;
    std::vector<unsigned char> buffer = std::vector<unsigned char>(kFrameBytes + 64, 0x11);
    Received received;
};

} // namespace

TEST_F(SampleGrabberCallbackTest, FrameSizeIsEmptyAtFirstAndThenTheSetOne)
{
    const SampleGrabberCallback fresh;
    EXPECT_EQ(fresh.frameSize(), QSize(0, 0));
    EXPECT_EQ(callback.frameSize(), QSize(4, 3));
}

TEST_F(SampleGrabberCallbackTest, FrameBecomesAnImageOfTheSetSizeIn32BitRgb)
{
    buffer[12] = 0x33; // blue, green and red of the last pixel of the first line
    buffer[13] = 0x44;
    buffer[14] = 0x55;
    EXPECT_TRUE(deliver(kFrameBytes));
    EXPECT_EQ(received.count, 1);
    EXPECT_EQ(received.size, QSize(4, 3));
    EXPECT_EQ(received.format, QImage::Format_RGB32);
    EXPECT_EQ(received.bytesPerLine, 16);
    EXPECT_EQ(received.corner, qRgb(0x55, 0x44, 0x33));
}

TEST_F(SampleGrabberCallbackTest, ImageRefersToTheBufferWithoutACopy)
{
    ASSERT_TRUE(deliver(kFrameBytes));
    EXPECT_EQ(received.bits, buffer.data());
}

TEST_F(SampleGrabberCallbackTest, SignalIsEmittedOnTheCallingThreadBeforeTheCallReturns)
{
    std::thread::id streamer;
    int countAtReturn = 0;
    std::thread([&] {
        streamer = std::this_thread::get_id();
        deliver(kFrameBytes);
        countAtReturn = received.count;
    }).join();
    EXPECT_EQ(countAtReturn, 1);
    EXPECT_EQ(received.thread, streamer);
    EXPECT_NE(received.thread, std::this_thread::get_id());
}

TEST_F(SampleGrabberCallbackTest, NullBufferIsRefused)
{
    EXPECT_FALSE(callback.bufferCallback(0.0, nullptr, static_cast<long>(kFrameBytes)));
    EXPECT_FALSE(callback.bufferCallback(0.0, nullptr, 0));
    EXPECT_EQ(received.count, 0);
}

TEST_F(SampleGrabberCallbackTest, BufferShorterThanTheFrameIsRefused)
{
    EXPECT_FALSE(deliver(kFrameBytes - 1));
    EXPECT_FALSE(deliver(0));
    EXPECT_FALSE(callback.bufferCallback(0.0, buffer.data(), -1));
    EXPECT_EQ(received.count, 0);
}

TEST_F(SampleGrabberCallbackTest, BytesAfterTheFrameAreIgnored)
{
    EXPECT_TRUE(deliver(kFrameBytes + 64));
    EXPECT_EQ(received.size, QSize(4, 3));
}

TEST_F(SampleGrabberCallbackTest, NewFrameSizeAppliesFromTheNextFrame)
{
    callback.setFrameSize({2, 2});
    EXPECT_TRUE(deliver(16));
    EXPECT_EQ(received.size, QSize(2, 2));
    callback.setFrameSize({5, 4});
    EXPECT_FALSE(deliver(79));
    EXPECT_TRUE(deliver(80));
    EXPECT_EQ(received.size, QSize(5, 4));
}

TEST_F(SampleGrabberCallbackTest, EveryFrameIsEmitted)
{
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(deliver(kFrameBytes));
    EXPECT_EQ(received.count, 5);
}

TEST_F(SampleGrabberCallbackTest, LargestFrameIsCountedWithoutOverflow)
{
    // With 4 bytes per pixel the size does not fit into 32 bits, where it would be 0, negative or
    // another number.
    for (const QSize& size : {QSize(32768, 32768), QSize(30000, 20000), QSize(40000, 40000)}) {
        callback.setFrameSize(size);
        EXPECT_FALSE(deliver(buffer.size())) << size.width() << " x " << size.height();
    }
    EXPECT_EQ(received.count, 0);
}
