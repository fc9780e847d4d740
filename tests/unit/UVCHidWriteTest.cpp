#include "CodePages.h"
#include "FrameReference.h"
#include "UVCHidTest.h"

namespace {

constexpr int kWriteMirror = 0x5091;
constexpr int kWriteView = 0x50A1;
constexpr int kStore = 0x5100;

/// The two writes differ only in their payload; the same rules decide about success.
struct WriteOperation
{
    const char* name;
    int cmd;
    int (*write)(UVCHid&);
};

void PrintTo(const WriteOperation& operation, std::ostream* out)
{
    *out << operation.name;
}

class UVCHidWrite : public UVCHidTest
{
protected:
    QByteArray onlyFrame() const
    {
        const QList<QByteArray> frames = hidapi.writtenFrames();
        return frames.size() == 1 ? frames.first() : QByteArray();
    }
};

class UVCHidAnyWrite : public UVCHidWrite, public ::testing::WithParamInterface<WriteOperation>
{
protected:
    int write() { return GetParam().write(*hid); }

    int writeAnswered(const ScriptedReply& reply)
    {
        hidapi.queueAnswer(reply.report(static_cast<std::uint16_t>(GetParam().cmd)));
        return write();
    }
};

} // namespace

// --- What is sent

TEST_F(UVCHidWrite, ValueTravelsAsOneByte)
{
    hid->writeInfoToDevice2(120, kWriteView);
    EXPECT_EQ(onlyFrame(), FrameReference::request(kWriteView, 1, QByteArray(1, '\x78'), 1));
}

TEST_F(UVCHidWrite, ValueIsCutToItsLowByte)
{
    const QList<QPair<int, int>> cases{{300, 0x2C}, {0, 0},      {255, 0xFF},  {256, 0x00},
                                       {-1, 0xFF},  {128, 0x80}, {-128, 0x80}, {0x7FFF5A, 0x5A}};
    for (const auto& [value, byte] : cases) {
        hidapi.forgetCalls();
        hid->writeInfoToDevice2(value, kWriteView);
        EXPECT_EQ(onlyFrame(),
                  FrameReference::request(kWriteView, 1, QByteArray(1, static_cast<char>(byte)), 1))
            << value;
    }
}

TEST_F(UVCHidWrite, MirrorOnHasTheKnownChecksum)
{
    hid->writeInfoToDevice2(1, kWriteMirror);
    EXPECT_EQ(onlyFrame().mid(12, 2), QByteArray::fromHex("ba03"));
}

TEST_F(UVCHidWrite, StoreCommandCarriesNoPayload)
{
    hid->writeInfoToDevice("", kStore);
    const QByteArray frame = onlyFrame();
    ASSERT_EQ(frame.size(), 1024);
    EXPECT_EQ(frame.left(12), QByteArray::fromHex("015a5a005101000000000000"));
    const std::uint16_t headerChecksum = FrameReference::checksum(frame.left(12));
    EXPECT_EQ(static_cast<quint8>(frame.at(12)), headerChecksum & 0xFF);
    EXPECT_EQ(static_cast<quint8>(frame.at(13)), headerChecksum >> 8);
    EXPECT_EQ(frame.mid(14), QByteArray(1010, '\0'));
}

TEST_F(UVCHidWrite, NullTextTravelsLikeAnEmptyOne)
{
    hid->writeInfoToDevice(QString(), kStore);
    EXPECT_EQ(onlyFrame(), FrameReference::request(kStore, 1, {}, 0));
}

TEST_F(UVCHidWrite, TextTravelsWithItsLength)
{
    hid->writeInfoToDevice("Room 12", kStore);
    EXPECT_EQ(onlyFrame(), FrameReference::request(kStore, 1, "Room 12", 7));
}

TEST_F(UVCHidWrite, LengthOfATextCountsCharactersWhileTheChecksumCoversBytes)
{
    const QString text = QStringLiteral("A\u00E9");
    hid->writeInfoToDevice(text, kStore);
    EXPECT_EQ(onlyFrame(), FrameReference::request(kStore, 1, CodePages::encode(text), 2));
}

TEST_F(UVCHidWrite, LengthOfATextCountsUtf16Units)
{
    const QString text = QString::fromUtf8("\xF0\x9F\x8E\xA5");
    hid->writeInfoToDevice(text, kStore);
    EXPECT_EQ(onlyFrame(), FrameReference::request(kStore, 1, CodePages::encode(text), 2));
}

TEST_F(UVCHidWrite, LongestTextFillsTheFrame)
{
    hidapi.respondTo(kStore, {});
    EXPECT_EQ(hid->writeInfoToDevice(QString(1010, 'x'), kStore), 0);
    EXPECT_EQ(onlyFrame(), FrameReference::request(kStore, 1, QByteArray(1010, 'x'), 1010));
}

TEST_F(UVCHidWrite, TextLongerThanAFrameIsRefusedWithoutTouchingTheDevice)
{
    hidapi.respondTo(kStore, {});
    EXPECT_EQ(hid->writeInfoToDevice(QString(1011, 'x'), kStore), -1);
    EXPECT_EQ(hid->writeInfoToDevice(QString(70000, 'x'), kStore), -1);
    EXPECT_EQ(hidapi.calls(), QStringList());
}

TEST_F(UVCHidWrite, BytesDecideWhetherATextFits)
{
    constexpr QChar accented(0xE9); // one byte or two, depending on the platform's encoding
    const int most = 1010 / CodePages::encode(QString(accented)).size();
    hidapi.respondTo(kStore, {});
    EXPECT_EQ(hid->writeInfoToDevice(QString(most, accented), kStore), 0);
    EXPECT_EQ(hid->writeInfoToDevice(QString(most + 1, accented), kStore), -1);
}

// --- The result

TEST_P(UVCHidAnyWrite, OpensWritesReadsAndClosesInThisOrder)
{
    EXPECT_EQ(writeAnswered({}), 0);
    EXPECT_EQ(hidapi.calls(), exchangeCalls(1000));
}

TEST_P(UVCHidAnyWrite, RefusalFails)
{
    for (const std::uint32_t status : {1U, 0x80U, 0x100U, 0x10000U, 0x1000000U, 0xFFFFFFFFU})
        EXPECT_EQ(writeAnswered({{}, status}), -1) << status;
}

TEST_P(UVCHidAnyWrite, EchoDoesNotMatter)
{
    ScriptedReply reply;
    reply.echo = 0x1234;
    EXPECT_EQ(writeAnswered(reply), 0);
}

TEST_P(UVCHidAnyWrite, TimeoutFails)
{
    hidapi.queueReadResult(0);
    EXPECT_EQ(write(), -1);
    EXPECT_EQ(hidapi.calls(), exchangeCalls(1000));
}

TEST_P(UVCHidAnyWrite, ReadErrorSucceeds)
{
    hidapi.queueReadResult(-1);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(hidapi.calls(), exchangeCalls(1000));
}

TEST_P(UVCHidAnyWrite, AnswerOfOneByteSucceeds)
{
    hidapi.queueAnswer(QByteArray(1, '\x01'));
    EXPECT_EQ(write(), 0);
}

TEST_P(UVCHidAnyWrite, FailedWriteIsIgnoredAndTheAnswerDecides)
{
    for (const int result : {-1, 0}) {
        hidapi.setWriteResult(result);
        hidapi.forgetCalls();
        EXPECT_EQ(writeAnswered({}), 0) << result;
        EXPECT_EQ(hidapi.calls().filter("hid_read_timeout").size(), 1) << result;
        EXPECT_EQ(writeAnswered({{}, 1}), -1) << result;
        hidapi.queueReadResult(0);
        EXPECT_EQ(write(), -1) << result;
        hidapi.queueReadResult(-1);
        EXPECT_EQ(write(), 0) << result;
        EXPECT_FALSE(log.contains("hid_write error")) << result;
    }
}

TEST_P(UVCHidAnyWrite, InterfaceThatCannotBeOpenedFails)
{
    refuseOpening();
    EXPECT_EQ(write(), -1);
    EXPECT_EQ(hidapi.calls(), refusedOpenCalls());
    EXPECT_EQ(log.texts(), (QStringList{QStringLiteral("UVCHid::%1 m_devicePath = \"/dev/hidraw4\"")
                                            .arg(QLatin1String(GetParam().name)),
                                        QStringLiteral("HID设备打开失败!")}));
}

TEST_P(UVCHidAnyWrite, LogTellsRequestAndAnswer)
{
    writeAnswered({{}, 0x2A});
    ASSERT_EQ(log.texts().size(), 3);
    EXPECT_EQ(log.texts().at(0), QStringLiteral("UVCHid::%1 m_devicePath = \"/dev/hidraw4\"")
                                     .arg(QLatin1String(GetParam().name)));
    EXPECT_TRUE(log.texts().at(1).startsWith("host_send:\treport_id:1,magic:5a5a,cmd:5"));
    EXPECT_EQ(log.texts().at(2), QStringLiteral("report_id:1,magic:5a5a,cmd:%1,data_status:2,"
                                                "datalen:0,response_status:2a,crc:0\n")
                                     .arg(GetParam().cmd, 0, 16));
}

INSTANTIATE_TEST_SUITE_P(
    Operations, UVCHidAnyWrite,
    ::testing::Values(WriteOperation{"writeInfoToDevice2", kWriteMirror,
                                     [](UVCHid& h) {
                                         return h.writeInfoToDevice2(1, kWriteMirror);
                                     }},
                      WriteOperation{"writeInfoToDevice", kStore,
                                     [](UVCHid& h) { return h.writeInfoToDevice("", kStore); }}),
    [](const auto& test) { return std::string(test.param.name); });
