#include "windows/GrabberCallback.h"
#include "SampleGrabberCallback.h"

#include <array>
#include <gtest/gtest.h>
#include <strmif.h>

namespace {

class GrabberCallbackTest : public ::testing::Test
{
protected:
    GrabberCallbackTest()
    {
        receiver.setFrameSize({2, 2});
        callback.setReceiver(&receiver);
        QObject::connect(
            &receiver, &SampleGrabberCallback::sigImage, &receiver,
            [this](const QImage& image) { images << image.copy(); }, Qt::DirectConnection);
    }

    SampleGrabberCallback receiver;
    GrabberCallback callback;
    QList<QImage> images;
    std::array<BYTE, 16> frame{};
};

} // namespace

TEST_F(GrabberCallbackTest, ReferencesAreNotCounted)
{
    EXPECT_EQ(callback.AddRef(), 1U);
    EXPECT_EQ(callback.AddRef(), 1U);
    EXPECT_EQ(callback.Release(), 2U);
    EXPECT_EQ(callback.Release(), 2U);
}

TEST_F(GrabberCallbackTest, ReturnsTwoInterfaces)
{
    void* object = nullptr;
    EXPECT_EQ(callback.QueryInterface(__uuidof(IUnknown), &object), S_OK);
    EXPECT_EQ(object, &callback);
    object = nullptr;
    EXPECT_EQ(callback.QueryInterface(__uuidof(ISampleGrabberCB), &object), S_OK);
    EXPECT_EQ(object, &callback);
    EXPECT_EQ(callback.QueryInterface(__uuidof(ISampleGrabber), &object), E_NOTIMPL);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(callback.QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
}

TEST_F(GrabberCallbackTest, SamplesAreRefused)
{
    EXPECT_EQ(callback.SampleCB(0.0, nullptr), E_NOTIMPL);
}

TEST_F(GrabberCallbackTest, BufferBecomesAnImage)
{
    frame = {0x01, 0x02, 0x03, 0x00};
    EXPECT_EQ(callback.BufferCB(0.5, frame.data(), static_cast<LONG>(frame.size())), S_OK);
    ASSERT_EQ(images.size(), 1);
    EXPECT_EQ(images.front().size(), QSize(2, 2));
    EXPECT_EQ(images.front().format(), QImage::Format_RGB32);
    EXPECT_EQ(images.front().pixel(0, 0), qRgb(3, 2, 1));
}

TEST_F(GrabberCallbackTest, MissingBufferIsAnError)
{
    EXPECT_EQ(callback.BufferCB(0.0, nullptr, 16), E_POINTER);
    EXPECT_TRUE(images.isEmpty());
}

TEST_F(GrabberCallbackTest, FrameOfAnotherFormatIsNoImage)
{
    EXPECT_EQ(callback.BufferCB(0.0, frame.data(), 8), S_OK);
    EXPECT_TRUE(images.isEmpty());
}

TEST_F(GrabberCallbackTest, WithoutReceiverFramesAreDropped)
{
    callback.setReceiver(nullptr);
    EXPECT_EQ(callback.BufferCB(0.0, frame.data(), static_cast<LONG>(frame.size())), S_OK);
    EXPECT_TRUE(images.isEmpty());
}
