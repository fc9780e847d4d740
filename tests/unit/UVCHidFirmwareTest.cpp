#include "UVCHidTest.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

namespace {

constexpr int kHeader = 14;
constexpr int kMaxPayload = 1010;

int uint16At(const QByteArray& frame, int offset)
{
    return static_cast<quint8>(frame[offset]) | (static_cast<quint8>(frame[offset + 1]) << 8);
}

int commandOf(const QByteArray& frame)
{
    return uint16At(frame, 3);
}

/// Transfers image files over the persistent handle, which is number 1.
class UVCHidFirmware : public UVCHidTest
{
protected:
    void SetUp() override
    {
        UVCHidTest::SetUp();
        ASSERT_TRUE(folder.isValid());
        for (const int cmd : {0x4000, 0x4200, 0x4300})
            hidapi.respondTo(static_cast<std::uint16_t>(cmd), {});
    }

    static QByteArray image(int size)
    {
        QByteArray bytes(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>((i * 7 + i / 251) & 0xFF);
        return bytes;
    }

    QString writeFile(const QByteArray& bytes, const QString& name = QStringLiteral("image.bin"))
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return file.fileName();
    }

    QList<QByteArray> packets() const
    {
        QList<QByteArray> result;
        for (const QByteArray& frame : hidapi.writtenFrames()) {
            if (commandOf(frame) == 0x4200)
                result << frame;
        }
        return result;
    }

    QList<int> commands() const
    {
        QList<int> result;
        for (const QByteArray& frame : hidapi.writtenFrames())
            result << commandOf(frame);
        return result;
    }

    void answer(std::uint16_t cmd, const ScriptedReply& reply, int times = 1)
    {
        for (int i = 0; i < times; ++i)
            hidapi.queueAnswer(reply.report(cmd));
    }

    static ScriptedReply refusal() { return {{}, 1}; }
    static ScriptedReply wrongEcho()
    {
        ScriptedReply reply;
        reply.echo = 0x4201;
        return reply;
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(UVCHidFirmware, EmptyPathSaysWhyAndSendsNothing)
{
    EXPECT_FALSE(hid->updateFile(QString()));
    EXPECT_EQ(hid->errorText(), QStringLiteral("升级的文件路径为空"));
    EXPECT_EQ(hidapi.calls(), QStringList());
}

TEST_F(UVCHidFirmware, EmptyImageSendsStartAndEndAlone)
{
    EXPECT_TRUE(hid->updateFile(writeFile({})));
    EXPECT_EQ(commands(), (QList<int>{0x4000, 0x4300}));
}

TEST_F(UVCHidFirmware, ImageOfOneFullPacketIsItsOwnLastPacket)
{
    const QByteArray bytes = image(kMaxPayload);
    EXPECT_TRUE(hid->updateFile(writeFile(bytes)));
    const QList<QByteArray> sent = packets();
    ASSERT_EQ(sent.size(), 1);
    EXPECT_EQ(sent[0][5], 2);
    EXPECT_EQ(uint16At(sent[0], 6), kMaxPayload);
    EXPECT_EQ(uint16At(sent[0], 8), 1);
    EXPECT_EQ(sent[0].mid(kHeader), bytes);
}

TEST_F(UVCHidFirmware, OneByteMoreMakesASecondPacketThatKeepsTheBytesBeforeIt)
{
    const QByteArray bytes = image(kMaxPayload + 1);
    EXPECT_TRUE(hid->updateFile(writeFile(bytes)));
    const QList<QByteArray> sent = packets();
    ASSERT_EQ(sent.size(), 2);
    EXPECT_EQ(sent[0][5], 1);
    EXPECT_EQ(uint16At(sent[0], 6), kMaxPayload);
    EXPECT_EQ(sent[1][5], 2);
    EXPECT_EQ(uint16At(sent[1], 6), 1);
    EXPECT_EQ(uint16At(sent[1], 8), 2);
    EXPECT_EQ(sent[1][kHeader], bytes[kMaxPayload]);
    EXPECT_EQ(sent[1].mid(kHeader + 1), bytes.mid(1, kMaxPayload - 1));
}

TEST_F(UVCHidFirmware, ProgressIsReportedAfterEachAcknowledgedPacket)
{
    QList<QPair<qint64, qint64>> progress;
    hid->setTransferProgress([&progress](qint64 sent, qint64 size) {
        progress.append({sent, size});
    });
    EXPECT_TRUE(hid->updateFile(writeFile(image(2021))));
    EXPECT_EQ(progress, (QList<QPair<qint64, qint64>>{{1010, 2021}, {2020, 2021}, {2021, 2021}}));
}

TEST_F(UVCHidFirmware, ChecksumOfAPacketCoversJustItsPayload)
{
    EXPECT_TRUE(hid->updateFile(writeFile(image(kMaxPayload + 3))));
    for (const QByteArray& frame : packets()) {
        const QByteArray covered = frame.left(12) + frame.mid(kHeader, uint16At(frame, 6));
        const auto expected =
            HidFrame::checksum(reinterpret_cast<const std::uint8_t*>(covered.constData()),
                               static_cast<std::size_t>(covered.size()));
        EXPECT_EQ(uint16At(frame, 12), expected);
    }
}

TEST_F(UVCHidFirmware, StartHasNoPayloadAndTheKnownChecksum)
{
    EXPECT_TRUE(hid->updateStartEnd(0x4000));
    const QByteArray frame = hidapi.writtenFrames().constFirst();
    EXPECT_EQ(frame.left(14).toHex(), QByteArray("015a5a0040000000000000000000").left(24) + "390a");
    EXPECT_EQ(hidapi.calls(), (QStringList{"hid_set_nonblocking(#1, 0)", "hid_write(#1, 1024)",
                                           "hid_read_timeout(#1, 1024, 3000)"}));
}

TEST_F(UVCHidFirmware, StartRefusedTwiceGoesOnAtTheThirdTime)
{
    answer(0x4000, refusal(), 2);
    EXPECT_TRUE(hid->updateFile(writeFile(image(10))));
    EXPECT_EQ(commands(), (QList<int>{0x4000, 0x4000, 0x4000, 0x4200, 0x4300}));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("返回失败状态")));
}

TEST_F(UVCHidFirmware, StartRefusedThreeTimesEndsTheTransfer)
{
    answer(0x4000, refusal(), 3);
    EXPECT_FALSE(hid->updateFile(writeFile(image(10))));
    EXPECT_EQ(commands(), (QList<int>{0x4000, 0x4000, 0x4000}));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("重试3次发送升级开始命令失败，退出升级。")));
}

TEST_F(UVCHidFirmware, AnswerCutBeforeItsStatusHasNoStatusOfTheAnswerBefore)
{
    answer(0x4000, refusal());
    hidapi.queueAnswer(ScriptedReply{}.report(0x4000).left(8));
    EXPECT_TRUE(hid->updateFile(writeFile(image(10))));
    EXPECT_EQ(commands(), (QList<int>{0x4000, 0x4000, 0x4200, 0x4300}));
}

TEST_F(UVCHidFirmware, StartWithAnotherEchoIsNoStart)
{
    ScriptedReply reply;
    reply.echo = 0x4300;
    answer(0x4000, reply);
    EXPECT_FALSE(hid->updateStartEnd(0x4000));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("设备返回指令不区配：17152 -> 16384")));
}

TEST_F(UVCHidFirmware, SilenceAfterAControlCommandIsReported)
{
    hidapi.queueReadResult(0);
    EXPECT_FALSE(hid->updateStartEnd(0x4300));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("hid_read error")));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("上位机收不到设备端的数据")));
}

TEST_F(UVCHidFirmware, EndRefusedFailsTheTransfer)
{
    answer(0x4000, {});
    answer(0x4200, {});
    answer(0x4300, refusal());
    EXPECT_FALSE(hid->updateFile(writeFile(image(10))));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("发送升级结束命令失败")));
}

TEST_F(UVCHidFirmware, PacketIsSentAgainUnchangedUntilItIsAcknowledged)
{
    answer(0x4000, {});
    answer(0x4200, wrongEcho(), 5);
    EXPECT_TRUE(hid->updateFile(writeFile(image(10))));
    const QList<QByteArray> sent = packets();
    ASSERT_EQ(sent.size(), 6);
    for (const QByteArray& frame : sent)
        EXPECT_EQ(frame, sent[0]);
    EXPECT_TRUE(log.texts().contains(QStringLiteral("retryCount:0\n")));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("retryCount:4\n")));
}

TEST_F(UVCHidFirmware, AnswerCutShortAcknowledgesNothingByTheBytesOfTheAnswerBefore)
{
    answer(0x4000, {});
    answer(0x4200, {});
    for (int i = 0; i < 7; ++i)
        hidapi.queueAnswer(QByteArray(1, '\x01'));
    hidapi.queueAnswer(QByteArray(1, '\x01')); // to the end command
    EXPECT_FALSE(hid->updateFile(writeFile(image(kMaxPayload * 2))));
    EXPECT_EQ(packets().size(), 1 + 7);
    EXPECT_EQ(commands().last(), 0x4300);
}

TEST_F(UVCHidFirmware, AcknowledgementOfTheSixthResendComesTooLate)
{
    answer(0x4200, wrongEcho(), 6);
    EXPECT_FALSE(hid->updateFilePacket(writeFile(image(kMaxPayload * 2))));
    EXPECT_EQ(packets().size(), 7);
}

TEST_F(UVCHidFirmware, FailedPacketsStillGetTheEndCommandAndTheDeviceDecides)
{
    answer(0x4000, {});
    answer(0x4200, refusal(), 7);
    EXPECT_TRUE(hid->updateFile(writeFile(image(10))));
    EXPECT_EQ(commands().constLast(), 0x4300);
}

TEST_F(UVCHidFirmware, SilenceAfterAPacketEndsThePackets)
{
    hidapi.queueReadResult(0);
    EXPECT_FALSE(hid->updateFilePacket(writeFile(image(kMaxPayload * 3))));
    EXPECT_EQ(packets().size(), 1);
    EXPECT_TRUE(hidapi.calls().contains("hid_read_timeout(#1, 1024, 1000)"));
}

TEST_F(UVCHidFirmware, RefusedWriteEndsThePackets)
{
    hidapi.setWriteResult(-1);
    hidapi.setErrorText(L"no such device");
    EXPECT_FALSE(hid->updateFilePacket(writeFile(image(10))));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("hid_write error")));
}

TEST_F(UVCHidFirmware, FileThatCannotBeOpenedIsReported)
{
    EXPECT_FALSE(hid->updateFilePacket(folder.filePath(QStringLiteral("nothing.bin"))));
    EXPECT_EQ(packets().size(), 0);
    EXPECT_FALSE(log.texts().filter(QStringLiteral("打开升级文件失败：")).isEmpty());
}

TEST_F(UVCHidFirmware, MissingFileStillGetsTheEndCommand)
{
    EXPECT_TRUE(hid->updateFile(folder.filePath(QStringLiteral("nothing.bin"))));
    EXPECT_EQ(commands(), (QList<int>{0x4000, 0x4300}));
}

TEST_F(UVCHidFirmware, TooLargeImageIsRefusedUnread)
{
    QFile file(folder.filePath(QStringLiteral("large.bin")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(8 * 1024 * 1024 + 1));
    EXPECT_FALSE(hid->updateFilePacket(file.fileName()));
    EXPECT_EQ(packets().size(), 0);
}

TEST_F(UVCHidFirmware, EveryPacketIsPrecededByItsPause)
{
    constexpr int count = 20;
    const QString path = writeFile(image(kMaxPayload * count));
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(hid->updateFilePacket(path));
    EXPECT_GE(clock.elapsed(), 10 * count);
}

TEST_F(UVCHidFirmware, EveryResendIsPrecededByItsPause)
{
    constexpr int resends = 5;
    const QString path = writeFile(image(10));
    answer(0x4200, refusal(), resends);
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(hid->updateFilePacket(path));
    EXPECT_GE(clock.elapsed(), 10 + 20 * resends);
}

TEST_F(UVCHidFirmware, EveryStepOfAPacketIsLogged)
{
    ScriptedReply reply;
    reply.status = 0x2A;
    answer(0x4200, reply);
    EXPECT_TRUE(hid->updateFilePacket(writeFile(image(10))));
    const QByteArray frame = packets().constFirst();
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(frame.constData());
    const std::uint16_t head = HidFrame::checksum(bytes, 12);
    const std::uint16_t whole = HidFrame::checksum(bytes + kHeader, 10, head);
    const QStringList texts = log.texts();
    ASSERT_GE(texts.size(), 8);
    EXPECT_EQ(texts.mid(0, 4), (QStringList{"packNUm:1\n", "data_len:10\n",
                                            QStringLiteral("headCRC1_%1\n").arg(head, 0, 16),
                                            QStringLiteral("headCRC2_%1\n").arg(whole, 0, 16)}));
    EXPECT_TRUE(
        texts.at(4).startsWith(QLatin1String("host_send:\treport_id:1,magic:5a5a,cmd:420,")));
    EXPECT_EQ(texts.at(5), QStringLiteral("respon:2a\n"));
    EXPECT_TRUE(texts.at(6).startsWith(QLatin1String("report_id:1,magic:5a5a,cmd:4200,")));
    EXPECT_EQ(texts.at(7), QStringLiteral("retryCount:0\n"));
}

TEST_F(UVCHidFirmware, AnswerToAControlCommandIsLogged)
{
    EXPECT_TRUE(hid->updateStartEnd(0x4000));
    const QByteArray report = ScriptedReply().report(0x4000);
    const QStringList texts = log.texts();
    ASSERT_EQ(texts.size(), 22);
    EXPECT_TRUE(texts.constFirst().startsWith(QLatin1String("host_send:\t")));
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(texts.at(i + 1), QString::number(static_cast<quint8>(report.at(i)), 16));
    EXPECT_TRUE(texts.constLast().startsWith(QLatin1String("report_id:1,magic:5a5a,cmd:4000,")));
}

TEST_F(UVCHidFirmware, LibrarysTextOfAFailureIsLogged)
{
    const QString text = QStringLiteral("\"no such device\"");
    hidapi.setErrorText(L"no such device");
    hidapi.queueReadResult(-1);
    EXPECT_FALSE(hid->updateStartEnd(0x4000));
    EXPECT_EQ(log.texts().count(text), 1);

    log.clear();
    hidapi.queueReadResult(-1);
    EXPECT_FALSE(hid->updateFilePacket(writeFile(image(10))));
    EXPECT_EQ(log.texts().count(text), 1);

    log.clear();
    hidapi.setWriteResult(-1);
    EXPECT_FALSE(hid->updateStartEnd(0x4000));
    const QStringList refused = log.texts().filter(text);
    ASSERT_EQ(refused.size(), 1);
    EXPECT_TRUE(refused.constFirst().startsWith(QLatin1String("UVCHid::updateStartEnd ")));
    EXPECT_TRUE(log.texts().contains(QStringLiteral("hid_write error")));

    log.clear();
    EXPECT_FALSE(hid->updateFilePacket(writeFile(image(10))));
    EXPECT_EQ(log.texts().count(text), 1);
}

TEST_F(UVCHidFirmware, FailuresOfControlCommandsAreCritical)
{
    ScriptedReply status;
    status.status = 42;
    answer(0x4000, status);
    ScriptedReply echo;
    echo.echo = 0x4300;
    answer(0x4000, echo);
    hidapi.queueReadResult(0);
    EXPECT_FALSE(hid->updateFile(writeFile(image(10))));
    EXPECT_EQ(log.texts(QtCriticalMsg),
              (QStringList{QStringLiteral("42"), QStringLiteral("返回失败状态"),
                           QStringLiteral("设备返回指令不区配：17152 -> 16384"),
                           QStringLiteral("上位机收不到设备端的数据"),
                           QStringLiteral("重试3次发送升级开始命令失败，退出升级。")}));

    log.clear();
    answer(0x4000, {});
    answer(0x4200, {});
    answer(0x4300, refusal());
    EXPECT_FALSE(hid->updateFile(writeFile(image(10))));
    EXPECT_EQ(log.texts(QtCriticalMsg),
              (QStringList{QStringLiteral("1"), QStringLiteral("返回失败状态"),
                           QStringLiteral("发送升级结束命令失败")}));
}

TEST_F(UVCHidFirmware, FileThatCannotBeOpenedIsNotCritical)
{
    EXPECT_FALSE(hid->updateFilePacket(folder.filePath(QStringLiteral("nothing.bin"))));
    EXPECT_EQ(log.texts(QtCriticalMsg), QStringList());
    EXPECT_EQ(log.texts(QtDebugMsg).filter(QStringLiteral("打开升级文件失败：")).size(), 1);
}

TEST_F(UVCHidFirmware, WithoutAnOpenHandleNothingIsSent)
{
    UVCHid closed;
    EXPECT_FALSE(closed.updateFile(writeFile(image(10))));
    EXPECT_EQ(hidapi.calls(), QStringList());
}
