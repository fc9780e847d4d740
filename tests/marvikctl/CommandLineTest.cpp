#include "CommandLine.h"
#include "CommandTable.h"
#include "OptionTable.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

Result<Invocation> parse(const QString& line)
{
    return CommandLine::parse((QStringLiteral("marvikctl ") + line).split(' ', Qt::SkipEmptyParts));
}

QString refusal(const QString& line)
{
    const auto invocation = parse(line);
    EXPECT_FALSE(invocation) << line.toStdString();
    if (invocation)
        return {};
    EXPECT_EQ(invocation.failure().kind, Failure::Kind::Usage);
    EXPECT_EQ(invocation.failure().exitCode(), ExitCode::Usage);
    return invocation.failure().message;
}

TEST(CommandLine, OptionsStandAnywhere)
{
    const auto invocation = parse("-d SVAA1 set --json fov=90 -n mirror=on --timeout 2.5");
    ASSERT_TRUE(invocation);
    EXPECT_EQ(invocation->command, "set");
    EXPECT_EQ(invocation->arguments, (QStringList{"fov=90", "mirror=on"}));
    EXPECT_EQ(invocation->serials, QStringList{"SVAA1"});
    EXPECT_TRUE(invocation->json);
    EXPECT_TRUE(invocation->dryRun);
    EXPECT_FALSE(invocation->quiet);
    EXPECT_EQ(invocation->timeout.count(), 2500);
}

TEST(CommandLine, DefaultsAreThoseOfTheHelp)
{
    const auto invocation = parse("list");
    ASSERT_TRUE(invocation);
    EXPECT_EQ(invocation->timeout.count(), 5000);
    EXPECT_EQ(invocation->parallel, 1);
    EXPECT_FALSE(invocation->all || invocation->json || invocation->verbose);
}

TEST(CommandLine, SerialNumbersMayBeRepeated)
{
    EXPECT_EQ(parse("get -d A --device=B")->serials, (QStringList{"A", "B"}));
}

TEST(CommandLine, WithoutACommandHelpIsNamed)
{
    EXPECT_EQ(refusal(""), "no command is given");
    EXPECT_TRUE(parse("").failure().hint.contains("marvikctl help"));
}

TEST(CommandLine, UnknownCommandNamesTheNearest)
{
    EXPECT_EQ(refusal("lst"), "unknown command \"lst\"");
    EXPECT_EQ(parse("lst").failure().hint, "Did you mean \"list\"?");
}

TEST(CommandLine, UnknownOptionIsRefused)
{
    EXPECT_FALSE(refusal("list --colour").isEmpty());
    EXPECT_FALSE(refusal("list --timeout").isEmpty()); // without its value
    EXPECT_FALSE(refusal("list --json=yes").isEmpty());
}

TEST(CommandLine, OptionOfAnotherCommandIsRefused)
{
    EXPECT_EQ(refusal("get --dry-run"), "the command \"get\" has no option --dry-run");
    EXPECT_TRUE(parse("set --dry-run fov=90"));
}

TEST(CommandLine, TimeoutIsANumberOfSeconds)
{
    EXPECT_EQ(parse("list -t 0")->timeout.count(), 0);
    for (const char* wrong : {"-1", "x", "1e9", "nan", "inf"})
        EXPECT_FALSE(refusal(QStringLiteral("list --timeout=%1").arg(wrong)).isEmpty()) << wrong;
}

TEST(CommandLine, AllAndOneExcludeEachOther)
{
    EXPECT_EQ(refusal("get --all -d SVAA1"), "--all and --device exclude each other");
    EXPECT_FALSE(refusal("get --device=").isEmpty());
}

TEST(CommandLine, VersionAndHelpNeedNoCommand)
{
    EXPECT_EQ(parse("--version")->command, "version");
    EXPECT_EQ(parse("-h")->command, "help");
    EXPECT_EQ(parse("set --help")->command, "help");
    EXPECT_EQ(parse("set --help")->arguments, QStringList{"set"});
    EXPECT_EQ(parse("set fov=90 -h")->arguments, QStringList{"set"});
}

TEST(CommandTable, OptionsOfCommandsExist)
{
    QStringList options;
    for (const OptionRow& row : OptionTable::rows())
        options << QString::fromLatin1(row.name);
    EXPECT_EQ(options.removeDuplicates(), 0);
    for (const CommandRow& row : CommandTable::rows()) {
        const QStringList own =
            QString::fromLatin1(row.options).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString& option : own)
            EXPECT_TRUE(options.contains(option)) << row.name << ' ' << option.toStdString();
        EXPECT_FALSE(CommandTable::summary(row).isEmpty()) << row.name;
        EXPECT_EQ(CommandTable::find(QString::fromLatin1(row.name)), &row);
    }
}

} // namespace
