#include "ProfileStore.h"
#include "Assignments.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

using Owner = ProfileStore::Owner;

class Profiles : public ::testing::Test
{
protected:
    QString path(const char* name) const { return directory.filePath(QString::fromLatin1(name)); }

    QTemporaryDir directory;
    ProfileFolders folders{{path("user/profiles"), path("user/assignments.json")},
                           {path("site/profiles.d"), path("site/assignments.json")}};
    ProfileStore store{folders};
    Assignments assignments{folders};
};

TEST_F(Profiles, WrittenProfileIsReadAndListed)
{
    EXPECT_TRUE(*store.write("room", {{"fov", 90}}, Owner::User));
    EXPECT_EQ(*store.read("room"), (SettingValues{{"fov", 90}}));
    ASSERT_EQ(store.list().size(), 1);
    EXPECT_EQ(store.list().first().name, "room");
    EXPECT_EQ(store.list().first().owner, Owner::User);
}

TEST_F(Profiles, SameProfileIsNotWrittenAgain)
{
    EXPECT_TRUE(*store.write("room", {{"fov", 90}}, Owner::User));
    EXPECT_FALSE(*store.write("room", {{"fov", 90}}, Owner::User));
    EXPECT_TRUE(*store.write("room", {{"fov", 60}}, Owner::User));
}

TEST_F(Profiles, DamagedFileIsReplaced)
{
    QDir().mkpath(folders.user.profiles);
    QFile file(folders.user.profiles + "/room.json");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{");
    file.close();
    EXPECT_FALSE(store.read("room"));
    EXPECT_TRUE(*store.write("room", {{"fov", 90}}, Owner::User));
    EXPECT_TRUE(store.read("room"));
}

TEST_F(Profiles, ThatOfTheUserHidesThatOfTheSite)
{
    ASSERT_TRUE(store.write("room", {{"fov", 60}}, Owner::Site));
    ASSERT_TRUE(store.write("hall", {{"fov", 60}}, Owner::Site));
    ASSERT_TRUE(store.write("room", {{"fov", 90}}, Owner::User));
    EXPECT_EQ(store.read("room")->value("fov"), 90);
    EXPECT_EQ(store.read("hall")->value("fov"), 60);
    EXPECT_EQ(store.list().size(), 2);
}

TEST_F(Profiles, UnknownNameNamesTheNearest)
{
    ASSERT_TRUE(store.write("boardroom", {}, Owner::User));
    EXPECT_EQ(store.read("boardrom").failure().hint, "Did you mean \"boardroom\"?");
}

TEST_F(Profiles, NamesStayInTheirFolder)
{
    for (const char* wrong : {"", ".", "..", "../room", "a/b", "a\\b", ".hidden", "room ", "a:b",
                              "room.", "b\xc3\xbcro"})
        EXPECT_FALSE(store.write(QString::fromUtf8(wrong), {}, Owner::User)) << wrong;
    EXPECT_TRUE(store.write("Room-1.east_2", {}, Owner::User));
}

TEST_F(Profiles, FolderThatCannotBeMadeIsReported)
{
    QFile file(path("user"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const auto written = store.write("room", {}, Owner::User);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.failure().kind, Failure::Kind::File);
    EXPECT_FALSE(
        assignments.change(Owner::User, [](Assignments::Rules& rules) { rules.all = "room"; }));
}

TEST(Assignments, NarrowerRuleWinsAndOfTwoEqualTheUsers)
{
    Assignments::Rules user;
    Assignments::Rules site;
    const auto profile = [&] { return Assignments::profileIn(user, site, "SVAA1", "RQ-T47K"); };
    EXPECT_EQ(profile(), QString());
    site.all = "site-all";
    EXPECT_EQ(profile(), "site-all");
    user.all = "user-all";
    EXPECT_EQ(profile(), "user-all");
    site.models["RQ-T47K"] = "site-model";
    EXPECT_EQ(profile(), "site-model");
    user.models["RQ-T47K"] = "user-model";
    EXPECT_EQ(profile(), "user-model");
    site.serials["SVAA1"] = "site-serial";
    EXPECT_EQ(profile(), "site-serial");
    user.serials["SVAA1"] = "user-serial";
    EXPECT_EQ(profile(), "user-serial");
    EXPECT_EQ(Assignments::profileIn(user, site, "SVBB2", "X"), "user-all");
}

TEST_F(Profiles, RulesAreKeptAndChangeOnce)
{
    const auto assign = [this] {
        return assignments.change(Owner::User, [](Assignments::Rules& rules) {
            rules.serials["SVAA1"] = "room";
            rules.all = "hall";
        });
    };
    EXPECT_TRUE(*assign());
    EXPECT_FALSE(*assign());
    EXPECT_EQ(*assignments.profileOf("SVAA1", "RQ-T47K"), "room");
    EXPECT_EQ(*assignments.profileOf("SVBB2", "RQ-T47K"), "hall");
}

TEST_F(Profiles, DamagedRulesAreNotReplaced)
{
    QDir().mkpath(path("user"));
    QFile file(folders.user.assignments);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\n\"schema\": 1,\n\"serial\": {}\n}");
    file.close();
    const auto changed =
        assignments.change(Owner::User, [](Assignments::Rules& rules) { rules.all = "room"; });
    ASSERT_FALSE(changed);
    EXPECT_TRUE(
        changed.failure().message.endsWith("assignments.json:3: unknown member \"serial\""));
}

} // namespace
