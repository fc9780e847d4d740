#include "Report.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <QJsonDocument>

namespace {

const Failure kSilent{Failure::Kind::NotAnswered, "no answer", {}};
const Failure kRefused{Failure::Kind::Refused, "refused", {}};
const Failure kDenied{Failure::Kind::NoPermission, "denied", "do this"};

class ReportTest : public ::testing::Test
{
protected:
    CameraResult& add()
    {
        FoundCamera camera;
        camera.hid.path = QStringLiteral("/dev/hidraw%1").arg(number++);
        camera.model = CameraModels::rows().begin();
        return report.add(CameraLink(camera, std::chrono::milliseconds(0)));
    }

    CameraResult& addFailed(const Failure& failure)
    {
        CameraResult& result = add();
        result.fail(failure);
        return result;
    }

    int number = 0;
    Invocation invocation;
    Terminal terminal{false, false};
    Report report{invocation, terminal};
};

TEST_F(ReportTest, AllDone)
{
    add();
    add();
    EXPECT_EQ(report.exitCode(), ExitCode::Done);
}

TEST_F(ReportTest, OneOfTwoHadNothingToDo)
{
    add();
    add().outcome = CameraResult::Outcome::NothingToDo;
    EXPECT_EQ(report.exitCode(), ExitCode::Done);
}

TEST_F(ReportTest, NothingToDoForAny)
{
    add().outcome = CameraResult::Outcome::NothingToDo;
    EXPECT_EQ(report.exitCode(), ExitCode::NothingToDo);
}

TEST_F(ReportTest, OneOfTwoHasFailed)
{
    add();
    addFailed(kSilent);
    EXPECT_EQ(report.exitCode(), ExitCode::SomeFailed);
}

TEST_F(ReportTest, AllHaveFailedForReasonsOfOneCode)
{
    addFailed(kSilent);
    addFailed(kRefused);
    EXPECT_EQ(report.exitCode(), ExitCode::NotAnswered);
}

TEST_F(ReportTest, AllHaveFailedForDifferentReasons)
{
    addFailed(kSilent);
    addFailed(kDenied);
    EXPECT_EQ(report.exitCode(), ExitCode::SomeFailed);
}

TEST_F(ReportTest, FailureOfTheWholeCommandWins)
{
    add();
    report.fail(kDenied);
    EXPECT_EQ(report.exitCode(), ExitCode::NoPermission);
}

TEST_F(ReportTest, ListOfCamerasOfWhichOneIsSilentIsDone)
{
    report.ignoreCameraFailures();
    addFailed(kSilent);
    add();
    EXPECT_EQ(report.exitCode(), ExitCode::Done);
}

TEST_F(ReportTest, ListOfCamerasThatCannotBeOpenedIsNot)
{
    report.ignoreCameraFailures();
    addFailed(kDenied);
    EXPECT_EQ(report.exitCode(), ExitCode::NoPermission);
}

TEST_F(ReportTest, DocumentOfAFailedCamera)
{
    invocation.command = "get";
    addFailed(kDenied).serial = "SVAA1";
    add().details.insert("settings", QJsonObject{{"fov", 90}});
    const QJsonObject document = report.toJson();
    EXPECT_EQ(document.value("schema"), 1);
    EXPECT_EQ(document.value("command"), "get");
    EXPECT_EQ(document.value("result"), "some-failed");
    EXPECT_EQ(document.value("exitCode"), 1);
    const QJsonArray cameras = document.value("cameras").toArray();
    ASSERT_EQ(cameras.size(), 2);
    const QJsonObject failed = cameras.at(0).toObject();
    EXPECT_EQ(failed.value("serial"), "SVAA1");
    EXPECT_EQ(failed.value("result"), "failed");
    EXPECT_EQ(failed.value("error").toObject().value("code"), "no-permission");
    EXPECT_EQ(failed.value("error").toObject().value("hint"), "do this");
    const QJsonObject done = cameras.at(1).toObject();
    EXPECT_TRUE(done.value("serial").isNull());
    EXPECT_EQ(done.value("settings").toObject().value("fov"), 90);
    EXPECT_FALSE(done.contains("error"));
}

TEST(Terminal, ColumnsAreAligned)
{
    const QStringList lines = Terminal::aligned({{"a", "bbb", "c"}, {"aaaa", "b"}, {"x"}});
    EXPECT_EQ(lines, (QStringList{"a     bbb  c", "aaaa  b", "x"}));
}

TEST(Terminal, ColourEnds)
{
    EXPECT_EQ(Terminal::coloured("x", Terminal::Colour::Red), "\x1b[31mx\x1b[0m");
    EXPECT_EQ(Terminal::coloured("x", Terminal::Colour::None), "x");
}

} // namespace
