#include "FrameReference.h"
#include "UVCHidTest.h"

#include <ostream>

namespace {

constexpr int kVersion = 0x5001;
constexpr int kVideoFormat = 0x5020;
constexpr int kMirror = 0x5090;
constexpr int kWriteMirror = 0x5091;

struct Operation
{
    const char* name;
    int command;
    void (*run)(UVCHid& hid);
};

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

const Operation kReads[]{
    {"version", kVersion, [](UVCHid& hid) { hid.readInfoFromDevice(kVersion); }},
    {"setting", kMirror,
     [](UVCHid& hid) { static_cast<void>(hid.readSetting(DeviceSetting::HorizontalMirror)); }},
    {"video format", kVideoFormat,
     [](UVCHid& hid) {
         QMap<QString, int> answer;
         hid.readResolutionFromDevice(kVideoFormat, answer);
     }},
};

const Operation kWrite{"write", kWriteMirror,
                       [](UVCHid& hid) { hid.writeSetting(DeviceSetting::HorizontalMirror, 1); }};

class UVCHidFailure : public UVCHidTest, public ::testing::WithParamInterface<Operation>
{
protected:
    UVCHid::Failure run()
    {
        GetParam().run(*hid);
        return hid->lastFailure();
    }

    void queueReply(ScriptedReply reply)
    {
        hidapi.queueAnswer(reply.report(static_cast<std::uint16_t>(GetParam().command)));
    }
};

class UVCHidReadFailure : public UVCHidFailure
{
};

TEST_P(UVCHidFailure, NoneAfterAnAnswer)
{
    queueReply({QByteArray(36, '\1')});
    EXPECT_EQ(run(), UVCHid::Failure::None);
}

TEST_P(UVCHidFailure, InterfaceThatCannotBeOpenedIsNotSilent)
{
    refuseOpening();
    EXPECT_EQ(run(), UVCHid::Failure::NotOpened);
    EXPECT_FALSE(hid->wasSilent());
}

TEST_P(UVCHidFailure, TimeoutIsSilence)
{
    EXPECT_EQ(run(), UVCHid::Failure::Silent);
    EXPECT_TRUE(hid->wasSilent());
}

TEST_P(UVCHidFailure, StatusIsARefusal)
{
    ScriptedReply reply{QByteArray(1, '\1')};
    reply.status = 2;
    queueReply(reply);
    EXPECT_EQ(run(), UVCHid::Failure::Refused);
    EXPECT_FALSE(hid->wasSilent());
}

TEST_P(UVCHidFailure, IsForgottenByTheNextAnswer)
{
    GetParam().run(*hid);
    queueReply({QByteArray(36, '\1')});
    EXPECT_EQ(run(), UVCHid::Failure::None);
}

TEST_P(UVCHidReadFailure, AnotherCommandIsARefusal)
{
    hidapi.queueAnswer(ScriptedReply{QByteArray(36, '\1')}.report(0x7777));
    EXPECT_EQ(run(), UVCHid::Failure::Refused);
}

TEST_P(UVCHidReadFailure, RequestThatCannotBeWritten)
{
    hidapi.setWriteResult(-1);
    EXPECT_EQ(run(), UVCHid::Failure::NotSent);
}

INSTANTIATE_TEST_SUITE_P(Reads, UVCHidFailure, ::testing::ValuesIn(kReads));
INSTANTIATE_TEST_SUITE_P(Write, UVCHidFailure, ::testing::Values(kWrite));
INSTANTIATE_TEST_SUITE_P(Reads, UVCHidReadFailure, ::testing::ValuesIn(kReads));

/// A link that is used for parameter commands alone leaves no handle open.
TEST_F(UVCHidTest, PathWithoutAHandleIsEnoughForCommands)
{
    UVCHid other;
    other.setDevicePath(QString::fromUtf8(kPath));
    EXPECT_EQ(hidapi.openHandles(), 1);
    hidapi.queueAnswer(ScriptedReply{QByteArray(1, '\1')}.report(kMirror));
    EXPECT_EQ(other.readSetting(DeviceSetting::HorizontalMirror), 1);
    EXPECT_EQ(hidapi.openHandles(), 1);
}

} // namespace
