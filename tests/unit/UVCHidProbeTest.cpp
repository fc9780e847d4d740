#include "FrameReference.h"
#include "HidTest.h"
#include "UVCHid.h"

#include <QRegularExpression>

namespace {

constexpr int kProbe = 0x5000;
constexpr const char* kPath = "/dev/hidraw7";

class UVCHidProbe : public HidTest
{
protected:
    bool probe() { return UVCHid::getCameraConnectionStatus(kPath, 0xB206, 0xB215); }

    bool probeAnswered(const ScriptedReply& reply)
    {
        hidapi.queueAnswer(reply.report(kProbe));
        return probe();
    }

    static ScriptedReply connected() { return {QByteArray(1, '\0')}; }
};

} // namespace

TEST_F(UVCHidProbe, CameraThatAnswersZeroIsConnected)
{
    EXPECT_TRUE(probeAnswered(connected()));
    EXPECT_TRUE(probeAnswered({QByteArray::fromHex("00ff")}));
}

TEST_F(UVCHidProbe, CameraThatAnswersAnythingElseIsNot)
{
    EXPECT_FALSE(probeAnswered({QByteArray::fromHex("01")}));
    EXPECT_FALSE(probeAnswered({QByteArray::fromHex("ff")}));
    EXPECT_FALSE(probeAnswered({QByteArray::fromHex("0100")}));
}

TEST_F(UVCHidProbe, AnswerWithoutPayloadMeansNotConnected)
{
    EXPECT_FALSE(probeAnswered({}));
    ScriptedReply reply = connected();
    reply.dataLen = 0;
    EXPECT_FALSE(probeAnswered(reply));
}

TEST_F(UVCHidProbe, RefusalMeansNotConnected)
{
    for (const std::uint32_t status : {1U, 0x100U, 0x10000U, 0x1000000U}) {
        ScriptedReply reply = connected();
        reply.status = status;
        EXPECT_FALSE(probeAnswered(reply)) << status;
    }
}

TEST_F(UVCHidProbe, AnswerWithAnotherCommandMeansNotConnected)
{
    ScriptedReply reply = connected();
    reply.echo = 0x5001;
    EXPECT_FALSE(probeAnswered(reply));
}

TEST_F(UVCHidProbe, AnswerOfOneByteMeansNotConnected)
{
    hidapi.queueAnswer(QByteArray(1, '\x01'));
    EXPECT_FALSE(probe());
}

TEST_F(UVCHidProbe, LengthBeyondTheReportIsHarmless)
{
    ScriptedReply reply = connected();
    reply.dataLen = 65535;
    EXPECT_TRUE(probeAnswered(reply));
}

TEST_F(UVCHidProbe, OpensTheGivenPathWritesReadsAndCloses)
{
    probeAnswered(connected());
    EXPECT_EQ(hidapi.calls(),
              (QStringList{"hid_init()", "hid_open_path(/dev/hidraw7)", "hid_write(#1, 1024)",
                           "hid_read_timeout(#1, 1024, 3000)", "hid_close(#1)", "hid_exit()"}));
    EXPECT_EQ(hidapi.writtenFrames(), QList<QByteArray>{FrameReference::request(kProbe, 2, {}, 0)});
    EXPECT_EQ(hidapi.writtenFrames().first().mid(12, 2), QByteArray::fromHex("e705"));
}

TEST_F(UVCHidProbe, IdsDoNotMatter)
{
    hidapi.respondTo(kProbe, connected());
    EXPECT_TRUE(UVCHid::getCameraConnectionStatus(kPath, 0, 0));
    EXPECT_TRUE(UVCHid::getCameraConnectionStatus(kPath, 0x1234, 0xFFFF));
    EXPECT_EQ(hidapi.calls().filter("hid_open(").size(), 0);
    EXPECT_EQ(hidapi.calls().filter("hid_enumerate").size(), 0);
}

TEST_F(UVCHidProbe, EveryProbePairsStartAndEndOfTheLibrary)
{
    probeAnswered(connected());
    probe();
    hidapi.setWriteResult(-1);
    probe();
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    probe();
    EXPECT_EQ(hidapi.initBalance(), 0);
    EXPECT_EQ(hidapi.openHandles(), 0);
}

TEST_F(UVCHidProbe, InterfaceThatCannotBeOpenedMeansNotConnected)
{
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    EXPECT_FALSE(probe());
    EXPECT_EQ(hidapi.calls(),
              (QStringList{"hid_init()", "hid_open_path(/dev/hidraw7)", "hid_exit()"}));
    EXPECT_EQ(log.texts(), (QStringList{"UVCHid::getCameraConnectionStatus devPath = /dev/hidraw7",
                                        QStringLiteral("HID设备打开失败!")}));
}

TEST_F(UVCHidProbe, FailedWriteMeansNotConnected)
{
    const QRegularExpression reason(R"(^UVCHid::getCameraConnectionStatus [0-9]+ "Gone"$)");
    hidapi.setErrorText(L"Gone");
    for (const int result : {-1, 0}) {
        log.clear();
        hidapi.forgetCalls();
        hidapi.setWriteResult(result);
        EXPECT_FALSE(probe()) << result;
        EXPECT_EQ(hidapi.calls().filter("hid_read").size(), 0) << result;
        ASSERT_EQ(log.texts().size(), 4) << result;
        EXPECT_TRUE(reason.match(log.texts().at(2)).hasMatch()) << log.texts().at(2).toStdString();
        EXPECT_EQ(log.texts().at(3), "hid_write error") << result;
    }
}

TEST_F(UVCHidProbe, TimeoutAndReadErrorMeanNotConnected)
{
    hidapi.setErrorText(L"Gone");
    for (const int result : {0, -1}) {
        log.clear();
        hidapi.forgetCalls();
        hidapi.queueReadResult(result);
        EXPECT_FALSE(probe()) << result;
        EXPECT_EQ(log.texts().mid(32), (QStringList{R"("Gone")", "hid_read error"})) << result;
        const QStringList calls = hidapi.calls();
        ASSERT_EQ(calls.size(), 7) << result;
        EXPECT_TRUE(calls.at(4).startsWith("hid_error(#")) << result;
        EXPECT_TRUE(calls.at(5).startsWith("hid_close(#")) << result;
    }
}

TEST_F(UVCHidProbe, FailureWithoutAReasonIsLoggedAsEmptyText)
{
    hidapi.setErrorText(std::nullopt);
    hidapi.queueReadResult(-1);
    EXPECT_FALSE(probe());
    EXPECT_EQ(log.texts().mid(32), (QStringList{R"("")", "hid_read error"}));
}

TEST_F(UVCHidProbe, LogContainsRequestThirtyReceivedBytesAndAnswer)
{
    QByteArray payload(20, '\0');
    for (int i = 1; i < payload.size(); ++i)
        payload[i] = static_cast<char>(0xF0 + i);
    probeAnswered({payload});

    QStringList expected{"UVCHid::getCameraConnectionStatus devPath = /dev/hidraw7",
                         "host_send:\treport_id:1,magic:5a5a,cmd:500,data_status:2,data_len:00,"
                         "pack_num:0000,crc:5e7\n"};
    const QByteArray report = ScriptedReply{payload}.report(kProbe);
    for (int i = 0; i < 30; ++i)
        expected << QString::number(static_cast<quint8>(report.at(i)), 16);
    expected
        << "report_id:1,magic:5a5a,cmd:5000,data_status:2,datalen:14,response_status:0,crc:0\n";
    EXPECT_EQ(log.texts(), expected);
}
