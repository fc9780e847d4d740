#include "FrameReference.h"
#include "UVCHidTest.h"

#include <QRegularExpression>

namespace {

constexpr int kVideoFormat = 0x5020;

QByteArray formatPayload(qint32 width, qint32 height, qint32 streaming)
{
    QByteArray payload(36, '\x7E');
    const auto put = [&payload](int offset, qint32 value) {
        for (int i = 0; i < 4; ++i)
            payload[offset + i] =
                static_cast<char>((static_cast<quint32>(value) >> (8 * i)) & 0xFF);
    };
    put(0, width);
    put(4, height);
    put(32, streaming);
    return payload;
}

class UVCHidResolution : public UVCHidTest
{
protected:
    bool readAnswered(const ScriptedReply& reply, int cmd = kVideoFormat)
    {
        hidapi.queueAnswer(reply.report(static_cast<std::uint16_t>(cmd)));
        return hid->readResolutionFromDevice(cmd, map);
    }

    const QMap<QString, int> before{{"width", 640}, {"other", 3}};
    QMap<QString, int> map = before;
};

class UVCHidRefusedResolution : public UVCHidResolution,
                                public ::testing::WithParamInterface<std::uint32_t>
{
};

} // namespace

TEST_F(UVCHidResolution, FillsWidthHeightAndStreamFlag)
{
    EXPECT_TRUE(readAnswered({formatPayload(3840, 2160, 1)}));
    EXPECT_EQ(map, (QMap<QString, int>{
                       {"width", 3840}, {"height", 2160}, {"streamon", 1}, {"other", 3}}));
}

TEST_F(UVCHidResolution, NumbersAreSignedAndHave32Bits)
{
    EXPECT_TRUE(readAnswered({formatPayload(0x12345678, -1, std::numeric_limits<qint32>::min())}));
    EXPECT_EQ(map.value("width"), 0x12345678);
    EXPECT_EQ(map.value("height"), -1);
    EXPECT_EQ(map.value("streamon"), std::numeric_limits<qint32>::min());
}

TEST_F(UVCHidResolution, NumbersThatDidNotArriveAreZero)
{
    hidapi.queueAnswer(ScriptedReply{formatPayload(1920, 1080, 1)}.report(kVideoFormat).left(22));
    EXPECT_TRUE(hid->readResolutionFromDevice(kVideoFormat, map));
    EXPECT_EQ(map.value("width"), 1920);
    EXPECT_EQ(map.value("height"), 1080);
    EXPECT_EQ(map.value("streamon", 9), 0);
}

TEST_F(UVCHidResolution, ExchangesOneRequestWithoutPayload)
{
    readAnswered({formatPayload(1920, 1080, 0)});
    EXPECT_EQ(hidapi.calls(), exchangeCalls(3000));
    EXPECT_EQ(hidapi.writtenFrames(),
              QList<QByteArray>{FrameReference::request(kVideoFormat, 2, {}, 0)});
}

TEST_F(UVCHidResolution, InterfaceThatCannotBeOpenedSucceedsAndKeepsTheKnownAnswer)
{
    refuseOpening();
    EXPECT_TRUE(hid->readResolutionFromDevice(kVideoFormat, map));
    EXPECT_EQ(map, before);
    EXPECT_EQ(hidapi.calls(), refusedOpenCalls());
    EXPECT_EQ(log.texts().last(), QStringLiteral("HID设备打开失败!"));
}

TEST_F(UVCHidResolution, InterfaceThatCannotBeOpenedSucceedsForAnyCode)
{
    refuseOpening();
    EXPECT_TRUE(hid->readResolutionFromDevice(0x5001, map));
    EXPECT_EQ(map, before);
}

TEST_F(UVCHidResolution, FailedWriteFails)
{
    for (const int result : {-1, 0}) {
        hidapi.forgetCalls();
        hidapi.setWriteResult(result);
        EXPECT_FALSE(hid->readResolutionFromDevice(kVideoFormat, map)) << result;
        EXPECT_EQ(hidapi.calls().filter("hid_read").size(), 0) << result;
        EXPECT_EQ(map, before) << result;
    }
}

TEST_F(UVCHidResolution, FailedWriteIsLoggedWithOperationLineAndReason)
{
    hidapi.setWriteResult(0);
    hidapi.setErrorText(L"No such device");
    hid->readResolutionFromDevice(kVideoFormat, map);
    EXPECT_EQ(hidapi.calls(), refusedWriteCalls());

    const QStringList texts = log.texts();
    ASSERT_GE(texts.size(), 2);
    EXPECT_EQ(texts.last(), "hid_write error");
    const QRegularExpression reason(
        R"(^UVCHid::readResolutionFromDevice [0-9]+ "No such device"$)");
    EXPECT_TRUE(reason.match(texts.at(texts.size() - 2)).hasMatch())
        << texts.at(texts.size() - 2).toStdString();
}

TEST_F(UVCHidResolution, TimeoutAndReadErrorFail)
{
    const QRegularExpression line("^UVCHid::readResolutionFromDevice [0-9]+ Timeout or error$");
    for (const int result : {0, -1}) {
        hidapi.queueReadResult(result);
        EXPECT_FALSE(hid->readResolutionFromDevice(kVideoFormat, map)) << result;
        EXPECT_EQ(map, before) << result;
        EXPECT_TRUE(line.match(log.texts().last()).hasMatch()) << log.texts().last().toStdString();
    }
}

TEST_P(UVCHidRefusedResolution, RefusalFails)
{
    EXPECT_FALSE(readAnswered({formatPayload(3840, 2160, 1), GetParam()}));
    EXPECT_EQ(map, before);
}

INSTANTIATE_TEST_SUITE_P(Status, UVCHidRefusedResolution, kRefusals);

TEST_F(UVCHidResolution, AnswerWithAnotherCommandFails)
{
    ScriptedReply reply{formatPayload(3840, 2160, 1)};
    reply.echo = 0x5021;
    EXPECT_FALSE(readAnswered(reply));
    EXPECT_EQ(map, before);
}

TEST_F(UVCHidResolution, AnyOtherCodeFailsEvenWhenItIsAnswered)
{
    for (const int cmd : {0x5021, 0x5001, 0x0020, 0x5120}) {
        EXPECT_FALSE(readAnswered({formatPayload(3840, 2160, 1)}, cmd)) << cmd;
        ScriptedReply reply{formatPayload(3840, 2160, 1)};
        reply.echo = kVideoFormat;
        EXPECT_FALSE(readAnswered(reply, cmd)) << cmd;
        EXPECT_EQ(map, before) << cmd;
    }
}

TEST_F(UVCHidResolution, LogTellsStatusBeforeTheWholeAnswer)
{
    readAnswered({formatPayload(3840, 2160, 1)});
    EXPECT_EQ(log.texts(),
              (QStringList{R"(UVCHid::readResolutionFromDevice m_devicePath = "/dev/hidraw4")",
                           "host_send:\treport_id:1,magic:5a5a,cmd:5020,data_status:2,data_len:00,"
                           "pack_num:0000,crc:" +
                               QString::number(hidapi.writtenFrames().first().at(13), 16) +
                               QString::number(
                                   static_cast<quint8>(hidapi.writtenFrames().first().at(12)), 16) +
                               "\n",
                           "respon:0\n",
                           "report_id:1,magic:5a5a,cmd:5020,data_status:2,datalen:24,"
                           "response_status:0,crc:0\n",
                           "height 2160 width 3840 streamon 1"}));
}

TEST_F(UVCHidResolution, RefusalIsLoggedWithItsStatus)
{
    readAnswered({{}, 0x1FU});
    EXPECT_TRUE(log.contains("respon:1f\n"));
}
