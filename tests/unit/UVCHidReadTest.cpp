#include "FrameReference.h"
#include "LocaleCodec.h"
#include "UVCHidTest.h"

#include <QRegularExpression>

using ::testing::Contains;

namespace {

constexpr int kVersion = 0x5001;
constexpr int kSerial = 0x5010;
constexpr int kMirror = 0x5090;

class UVCHidRead : public UVCHidTest
{
protected:
    QString readAnswered(int cmd, const ScriptedReply& reply)
    {
        hidapi.queueAnswer(reply.report(static_cast<std::uint16_t>(cmd)));
        return hid->readInfoFromDevice(cmd);
    }

    QString readPayload(int cmd, const char* hexPayload)
    {
        return readAnswered(cmd, {QByteArray::fromHex(hexPayload)});
    }
};

class UVCHidSettingRead : public UVCHidRead, public ::testing::WithParamInterface<int>
{
};

class UVCHidRefusedRead : public UVCHidRead, public ::testing::WithParamInterface<std::uint32_t>
{
};

} // namespace

// --- The exchange

TEST_F(UVCHidRead, OpensWritesReadsAndClosesInThisOrder)
{
    readPayload(kMirror, "01");
    EXPECT_EQ(hidapi.calls(), exchangeCalls(3000));
}

TEST_F(UVCHidRead, WritesOneRequestWithoutPayload)
{
    readPayload(kVersion, "01");
    EXPECT_EQ(hidapi.writtenFrames(),
              QList<QByteArray>{FrameReference::request(kVersion, 2, {}, 0)});
}

TEST_F(UVCHidRead, EveryReadOpensTheInterfaceAnew)
{
    readPayload(kMirror, "01");
    readPayload(kMirror, "00");
    EXPECT_EQ(hidapi.calls().filter("hid_open_path").size(), 2);
    EXPECT_EQ(hidapi.calls().filter("hid_close").size(), 2);
    EXPECT_EQ(hidapi.calls().filter("hid_exit").size(), 2);
    EXPECT_EQ(hidapi.openHandles(), 1);
}

TEST_F(UVCHidRead, NeedsNoPersistentHandle)
{
    hid = std::make_unique<UVCHid>();
    hidapi.unplugAll();
    ASSERT_FALSE(hid->createHandleWithPath("/dev/hidraw9"));
    hidapi.forgetCalls();

    EXPECT_EQ(readPayload(kMirror, "01"), "1");
    EXPECT_THAT(hidapi.calls(), Contains(QString("hid_open_path(/dev/hidraw9)")));
    EXPECT_EQ(hidapi.openHandles(), 0);
    hid.reset();
}

TEST_F(UVCHidRead, PathIsPassedAsUtf8)
{
    const LocaleCodec latin("ISO-8859-1");
    const QString path = QStringLiteral("/dev/kamera-\u00E9\u4E2D");
    ASSERT_TRUE(hid->createHandleWithPath(path));
    QByteArray opened;
    hidapi.setOpenRule([&opened](const QByteArray& p) {
        opened = p;
        return true;
    });
    readPayload(kMirror, "01");
    EXPECT_EQ(opened, path.toUtf8());
}

// --- Failures

TEST_F(UVCHidRead, InterfaceThatCannotBeOpenedReadsAsOneNoncharacter)
{
    refuseOpening();
    for (const int cmd : {kVersion, kSerial, kMirror}) {
        const QString text = hid->readInfoFromDevice(cmd);
        ASSERT_EQ(text.size(), 1);
        EXPECT_EQ(text.at(0).unicode(), 0xFFFF);
        EXPECT_EQ(text.toInt(), 0);
    }
}

TEST_F(UVCHidRead, InterfaceThatCannotBeOpenedIsLeftAtOnce)
{
    refuseOpening();
    hid->readInfoFromDevice(kMirror);
    EXPECT_EQ(hidapi.calls(), refusedOpenCalls());
    EXPECT_EQ(log.texts(),
              (QStringList{R"(UVCHid::readInfoFromDevice m_devicePath = "/dev/hidraw4")",
                           QStringLiteral("HID设备打开失败!")}));
}

TEST_F(UVCHidRead, LibraryThatDoesNotStartAndDoesNotOpenReadsAsOneNoncharacter)
{
    hidapi.setInitResult(-1);
    refuseOpening();
    EXPECT_EQ(hid->readInfoFromDevice(kMirror), QString(QChar(0xFFFF)));
    EXPECT_EQ(hidapi.calls(), refusedOpenCalls());
}

TEST_F(UVCHidRead, FailedWriteReadsAsEmptyTextAndNoAnswerIsWaitedFor)
{
    for (const int result : {-1, 0}) {
        hidapi.forgetCalls();
        hidapi.setWriteResult(result);
        EXPECT_EQ(hid->readInfoFromDevice(kMirror), "") << result;
        EXPECT_EQ(hidapi.calls().filter("hid_read").size(), 0) << result;
    }
}

TEST_F(UVCHidRead, FailedWriteAsksForTheReasonBeforeTheInterfaceIsClosed)
{
    hidapi.setWriteResult(-1);
    hid->readInfoFromDevice(kMirror);
    EXPECT_EQ(hidapi.calls(), refusedWriteCalls());
}

TEST_F(UVCHidRead, FailedWriteIsLoggedWithOperationLineAndReason)
{
    hidapi.setWriteResult(-1);
    hidapi.setErrorText(L"Broken pipe");
    hid->readInfoFromDevice(kMirror);

    const QStringList texts = log.texts();
    ASSERT_GE(texts.size(), 2);
    EXPECT_EQ(texts.last(), "hid_write error");
    const QRegularExpression reason(R"(^UVCHid::readInfoFromDevice [0-9]+ "Broken pipe"$)");
    EXPECT_TRUE(reason.match(texts.at(texts.size() - 2)).hasMatch())
        << texts.at(texts.size() - 2).toStdString();
}

TEST_F(UVCHidRead, WriteOfOneByteIsGoodEnough)
{
    hidapi.setWriteResult(1);
    EXPECT_EQ(readPayload(kMirror, "01"), "1");
}

TEST_F(UVCHidRead, TimeoutAndReadErrorReadAsEmptyText)
{
    for (const int result : {0, -1}) {
        hidapi.queueReadResult(result);
        EXPECT_EQ(hid->readInfoFromDevice(kMirror), "") << result;
        EXPECT_EQ(hidapi.openHandles(), 1) << result;
    }
}

TEST_F(UVCHidRead, TimeoutIsLoggedOnOneLineWithOperationAndLine)
{
    hidapi.queueReadResult(0);
    hid->readInfoFromDevice(kMirror);
    const QRegularExpression expected("^UVCHid::readInfoFromDevice [0-9]+ Timeout or error$");
    EXPECT_TRUE(expected.match(log.texts().last()).hasMatch()) << log.texts().last().toStdString();
}

TEST_F(UVCHidRead, AnswerWithAnotherCommandReadsAsEmptyText)
{
    for (const int cmd : {kVersion, kSerial, kMirror}) {
        ScriptedReply reply{QByteArray(1, '\x01')};
        reply.echo = static_cast<std::uint16_t>(cmd + 1);
        EXPECT_EQ(readAnswered(cmd, reply), "") << cmd;
    }
}

TEST_F(UVCHidRead, AnswerMatchingInOneCommandByteOnlyReadsAsEmptyText)
{
    ScriptedReply reply{QByteArray(1, '\x01')};
    reply.echo = 0x4090;
    EXPECT_EQ(readAnswered(kMirror, reply), "");
    reply.echo = 0x5000;
    EXPECT_EQ(readAnswered(kMirror, reply), "");
}

TEST_P(UVCHidRefusedRead, RefusalReadsAsEmptyText)
{
    for (const int cmd : {kVersion, kSerial, kMirror})
        EXPECT_EQ(readAnswered(cmd, {QByteArray(1, '\x01'), GetParam()}), "") << cmd;
}

INSTANTIATE_TEST_SUITE_P(Status, UVCHidRefusedRead, kRefusals);

TEST_F(UVCHidRead, AnswerOfOneByteEchoesNothingAndReadsAsEmptyText)
{
    hidapi.queueAnswer(QByteArray(1, '\x01'));
    EXPECT_EQ(hid->readInfoFromDevice(kMirror), "");
}

TEST_F(UVCHidRead, AnswerCutBeforeItsPayloadReadsAsZero)
{
    hidapi.queueAnswer(ScriptedReply{QByteArray(1, '\x05')}.report(kMirror).left(14));
    EXPECT_EQ(hid->readInfoFromDevice(kMirror), "0");
}

TEST_F(UVCHidRead, AnswerCutBeforeItsPayloadHasNoBytesOfTheAnswerBefore)
{
    const QByteArray whole = ScriptedReply{QByteArray(1010, 'x')}.report(kSerial);
    hidapi.queueAnswer(whole);
    hidapi.queueAnswer(whole.left(14));
    ASSERT_EQ(hid->readInfoFromDevice(kSerial).size(), 1010);
    EXPECT_EQ(hid->readInfoFromDevice(kSerial), "");
}

TEST_F(UVCHidRead, UncheckedFieldsOfAnAnswerDoNotMatter)
{
    QByteArray report = ScriptedReply{QByteArray(1, '\x01')}.report(kMirror);
    report[0] = '\x33';
    report[1] = report[2] = '\x44';
    report[5] = '\x55';
    report[12] = report[13] = '\x66';
    hidapi.queueAnswer(report);
    EXPECT_EQ(hid->readInfoFromDevice(kMirror), "1");
}

// --- Settings

TEST_P(UVCHidSettingRead, LastByteWins)
{
    EXPECT_EQ(readPayload(GetParam(), "0001"), "1");
    EXPECT_EQ(readPayload(GetParam(), "0100"), "0");
    EXPECT_EQ(readPayload(GetParam(), "0102037f"), "127");
}

TEST_P(UVCHidSettingRead, ValueIsASignedByte)
{
    EXPECT_EQ(readPayload(GetParam(), "78"), "120");
    EXPECT_EQ(readPayload(GetParam(), "ff"), "-1");
    EXPECT_EQ(readPayload(GetParam(), "80"), "-128");
}

TEST_P(UVCHidSettingRead, AnswerWithoutPayloadReadsAsZero)
{
    EXPECT_EQ(readPayload(GetParam(), ""), "0");
}

TEST_P(UVCHidSettingRead, ClaimedLengthPicksTheByte)
{
    ScriptedReply reply{QByteArray::fromHex("0a0b0c")};
    reply.dataLen = 2;
    EXPECT_EQ(readAnswered(GetParam(), reply), "11");
}

TEST_P(UVCHidSettingRead, LengthBeyondTheReportReadsItsLastByte)
{
    QByteArray payload(1010, '\x11');
    payload[1009] = '\x22';
    for (const int claimed : {1011, 65535}) {
        ScriptedReply reply{payload};
        reply.dataLen = static_cast<std::uint16_t>(claimed);
        EXPECT_EQ(readAnswered(GetParam(), reply), "34") << claimed;
    }
}

INSTANTIATE_TEST_SUITE_P(Codes, UVCHidSettingRead,
                         ::testing::Values(0x5030, 0x5040, 0x5070, 0x5080, 0x5090, 0x50A0));

// --- Version

TEST_F(UVCHidRead, VersionBytesAreJoinedByDots)
{
    EXPECT_EQ(readPayload(kVersion, "01020a"), "1.2.10");
    EXPECT_EQ(readPayload(kVersion, "7f"), "127");
    EXPECT_EQ(readPayload(kVersion, "0000"), "0.0");
}

TEST_F(UVCHidRead, VersionBytesFrom128ReadAsTenDigitNumbers)
{
    EXPECT_EQ(readPayload(kVersion, "80"), "4294967168");
    EXPECT_EQ(readPayload(kVersion, "0180ff"), "1.4294967168.4294967295");
}

TEST_F(UVCHidRead, VersionWithoutPayloadIsEmpty)
{
    EXPECT_EQ(readPayload(kVersion, ""), "");
}

TEST_F(UVCHidRead, AnyOtherCodeReadsLikeAVersion)
{
    EXPECT_EQ(readPayload(0x5000, "0001"), "0.1");
    EXPECT_EQ(readPayload(0x5091, "05ff"), "5.4294967295");
}

TEST_F(UVCHidRead, VersionIsLogged)
{
    readPayload(kVersion, "01020a");
    EXPECT_EQ(log.texts().last(), R"("1.2.10")");
}

TEST_F(UVCHidRead, VersionWithALengthBeyondTheReportStopsAtItsEnd)
{
    ScriptedReply reply{QByteArray(1010, '\x01')};
    reply.dataLen = 65535;
    EXPECT_EQ(readAnswered(kVersion, reply).split('.').size(), 1010);
}

// --- Serial number

TEST_F(UVCHidRead, SerialNumberIsTheTextOfThePayload)
{
    EXPECT_EQ(readAnswered(kSerial, {"SN-2024/0001"}), "SN-2024/0001");
}

TEST_F(UVCHidRead, SerialNumberHasTheClaimedLength)
{
    ScriptedReply reply{"ABCDEFGH"};
    reply.dataLen = 3;
    EXPECT_EQ(readAnswered(kSerial, reply), "ABC");
    reply.dataLen = 0;
    EXPECT_EQ(readAnswered(kSerial, reply), "");
}

TEST_F(UVCHidRead, SerialNumberIsInTheLocalEncoding)
{
    {
        const LocaleCodec latin("ISO-8859-1");
        EXPECT_EQ(readPayload(kSerial, "41e942"), QStringLiteral("A\u00E9B"));
        EXPECT_EQ(readPayload(kSerial, "c3a9"), QStringLiteral("\u00C3\u00A9"));
    }
    {
        const LocaleCodec utf8("UTF-8");
        EXPECT_EQ(readPayload(kSerial, "c3a9"), QStringLiteral("\u00E9"));
        EXPECT_EQ(readPayload(kSerial, "e4b8ad"), QStringLiteral("\u4E2D"));
    }
}

TEST_F(UVCHidRead, SerialNumberOfGarbageFillsTheWholeReport)
{
    const LocaleCodec latin("ISO-8859-1");
    QByteArray garbage(1010, '\0');
    for (int i = 0; i < garbage.size(); ++i)
        garbage[i] = static_cast<char>(1 + i % 255);
    for (const int claimed : {1010, 1011, 65535}) {
        ScriptedReply reply{garbage};
        reply.dataLen = static_cast<std::uint16_t>(claimed);
        EXPECT_EQ(readAnswered(kSerial, reply), QString::fromLatin1(garbage)) << claimed;
    }
}

TEST_F(UVCHidRead, ZerosAtTheEndOfTheSerialNumberArePadding)
{
    EXPECT_EQ(readPayload(kSerial, "4142430000"), "ABC");
    EXPECT_EQ(readPayload(kSerial, "0000"), "");
}

TEST_F(UVCHidRead, ZeroInsideTheSerialNumberBelongsToIt)
{
    const QString expected = QStringLiteral("AB") + QChar(0) + QStringLiteral("C");
    EXPECT_EQ(readPayload(kSerial, "4142004300"), expected);
}

// --- Log lines

TEST_F(UVCHidRead, LogContainsRequestAnswerAndEveryPayloadByteTwice)
{
    readPayload(kVersion, "01ff");
    EXPECT_EQ(log.texts(),
              (QStringList{R"(UVCHid::readInfoFromDevice m_devicePath = "/dev/hidraw4")",
                           "host_send:\treport_id:1,magic:5a5a,cmd:501,data_status:2,data_len:00,"
                           "pack_num:0000,crc:4a3\n",
                           "report_id:1,magic:5a5a,cmd:5001,data_status:2,datalen:2,"
                           "response_status:0,crc:0\n",
                           "1", "1\n", "-1", "-1\n", R"("1.4294967295")"}));
}

TEST_F(UVCHidRead, RefusedAnswerIsLoggedWithItsPayload)
{
    readAnswered(kMirror, {QByteArray(1, '\x07'), 0xABCD1234U});
    EXPECT_EQ(log.texts().mid(2), (QStringList{"report_id:1,magic:5a5a,cmd:5090,data_status:2,"
                                               "datalen:1,response_status:abcd1234,crc:0\n",
                                               "7", "7\n"}));
}

TEST_F(UVCHidRead, LogLinesCarryFunctionAndSourceLine)
{
    readPayload(kVersion, "01");
    const LogCapture::Line line = log.lines().first();
    EXPECT_EQ(line.type, QtDebugMsg);
    EXPECT_TRUE(line.function.contains("UVCHid::readInfoFromDevice(int)"))
        << line.function.toStdString();
    EXPECT_GT(line.sourceLine, 0);
}

TEST_F(UVCHidRead, OutgoingFrameIsLoggedMostSignificantByteFirst)
{
    const QByteArray frame = QByteArray::fromHex("0a 0102 0304 05 0607 08090a0b 0c0d");
    QByteArray bytes = frame + QByteArray(1010, '\0');
    hid->printfStructSend(reinterpret_cast<unsigned char*>(bytes.data()));
    EXPECT_EQ(log.texts(), QStringList{"host_send:\treport_id:a,magic:21,cmd:43,data_status:5,"
                                       "data_len:76,pack_num:ba98,crc:dc\n"});
}
