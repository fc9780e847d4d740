#include "LogFile.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <thread>
#include <vector>

namespace {

int s_previousHandlerCalls = 0;

void countingHandler(QtMsgType, const QMessageLogContext&, const QString&)
{
    ++s_previousHandlerCalls;
}

class LogFileTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
        ASSERT_TRUE(directory.isValid());
    }

    [[nodiscard]] QString path() const { return directory.filePath("MarvikTools.log"); }
    static QByteArray contents(const QString& file)
    {
        QFile log(file);
        return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    }
    static QList<QByteArray> lines(const QString& file)
    {
        QList<QByteArray> lines = contents(file).split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

    QTemporaryDir directory;
};

bool matches(const QByteArray& line, const QString& pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern))
        .match(QString::fromUtf8(line))
        .hasMatch();
}

} // namespace

TEST_F(LogFileTest, LineHasTimeLevelThreadFunctionAndSourceLine)
{
    const QMessageLogContext origin("some/folder/Source.cpp", 42, "void Class::slot(int)",
                                    "default");
    const QByteArray line =
        LogFile::formatLine(QtWarningMsg, origin, QStringLiteral("检测到 text"));
    EXPECT_TRUE(matches(line, QStringLiteral("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3} W "
                                             "\\[0x[0-9a-f]+\\] void Class::slot\\(int\\) "
                                             "\\(Source\\.cpp:42\\) 检测到 text\n")))
        << line.constData();
}

TEST_F(LogFileTest, EveryLevelHasItsLetter)
{
    const QMessageLogContext origin("a.cpp", 1, "f", "default");
    const std::pair<QtMsgType, char> levels[] = {{QtDebugMsg, 'D'},
                                                 {QtInfoMsg, 'I'},
                                                 {QtWarningMsg, 'W'},
                                                 {QtCriticalMsg, 'C'},
                                                 {QtFatalMsg, 'F'}};
    for (const auto& [type, letter] : levels)
        EXPECT_EQ(LogFile::formatLine(type, origin, QString()).split(' ').at(1),
                  QByteArray(1, letter));
}

TEST_F(LogFileTest, LineWithoutAnOriginHasTheTextOnly)
{
    const QByteArray line =
        LogFile::formatLine(QtDebugMsg, QMessageLogContext(), QStringLiteral("text"));
    EXPECT_TRUE(matches(line, QStringLiteral("\\S+ D \\[0x[0-9a-f]+\\] text\n")))
        << line.constData();
}

TEST_F(LogFileTest, LineOfASubsystemHasItsCategory)
{
    const QMessageLogContext origin("a.cpp", 7, "f()", "marvik.hid");
    const QByteArray line = LogFile::formatLine(QtDebugMsg, origin, QStringLiteral("text"));
    EXPECT_TRUE(matches(line, QStringLiteral("\\S+ D \\[0x[0-9a-f]+\\] marvik\\.hid f\\(\\) "
                                             "\\(a\\.cpp:7\\) text\n")))
        << line.constData();
}

TEST_F(LogFileTest, LineEndsOnce)
{
    const QMessageLogContext origin;
    EXPECT_TRUE(LogFile::formatLine(QtDebugMsg, origin, QStringLiteral("a")).endsWith("] a\n"));
    EXPECT_TRUE(LogFile::formatLine(QtDebugMsg, origin, QStringLiteral("a\n")).endsWith("] a\n"));
}

TEST_F(LogFileTest, ThreadsHaveDifferentNumbers)
{
    const QMessageLogContext origin;
    const auto threadOf = [](const QByteArray& line) { return line.split(' ').at(2); };
    const QByteArray here = threadOf(LogFile::formatLine(QtDebugMsg, origin, QString()));
    QByteArray there;
    std::thread([&] { there = threadOf(LogFile::formatLine(QtDebugMsg, origin, {})); }).join();
    EXPECT_NE(here, there);
}

TEST_F(LogFileTest, MessagesAreInTheFileAtOnce)
{
    const LogFile log(directory.path());
    EXPECT_EQ(log.path(), path());
    qDebug("first");
    qCritical("second");
    const QList<QByteArray> written = lines(path());
    ASSERT_EQ(written.size(), 2);
    EXPECT_TRUE(written.at(0).endsWith("first"));
    EXPECT_TRUE(written.at(0).contains("LogFileTest.cpp:"));
    EXPECT_TRUE(written.at(1).contains(" C ["));
}

TEST_F(LogFileTest, MessagesGoToStandardErrorToo)
{
    ::testing::internal::CaptureStderr();
    {
        const LogFile log(directory.path());
        qDebug("to both");
    }
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("to both\n"), std::string::npos);
}

TEST_F(LogFileTest, DirectoryIsMade)
{
    const LogFile log(directory.filePath("a/b/c"));
    qDebug("text");
    EXPECT_EQ(lines(directory.filePath("a/b/c/MarvikTools.log")).size(), 1);
}

TEST_F(LogFileTest, LaterRunAppends)
{
    for (const char* text : {"first run", "second run"}) {
        const LogFile log(directory.path());
        qDebug("%s", text);
    }
    const QList<QByteArray> written = lines(path());
    ASSERT_EQ(written.size(), 2);
    EXPECT_TRUE(written.at(0).endsWith("first run"));
    EXPECT_TRUE(written.at(1).endsWith("second run"));
}

TEST_F(LogFileTest, FullFileIsRenamed)
{
    constexpr qint64 limit = 2000;
    const LogFile log(directory.path(), limit);
    int number = 0;
    while (!QFile::exists(path() + ".1") && number < 100)
        qDebug("line %d", number++);
    ASSERT_LT(number, 100);
    // The line that did not fit begins the new file; no line is lost or written twice.
    EXPECT_EQ(lines(path()).size(), 1);
    EXPECT_TRUE(
        lines(path()).first().endsWith(QByteArray("line ") + QByteArray::number(number - 1)));
    EXPECT_EQ(lines(path() + ".1").size(), number - 1);
    EXPECT_LE(QFileInfo(path() + ".1").size(), limit);
}

TEST_F(LogFileTest, OnlyTwoFilesAreKept)
{
    constexpr qint64 limit = 1000;
    const LogFile log(directory.path(), limit);
    for (int i = 0; i < 200; ++i)
        qDebug("line %d", i);
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files),
              (QStringList{"MarvikTools.log", "MarvikTools.log.1"}));
    EXPECT_LE(QFileInfo(path()).size(), limit);
    EXPECT_LE(QFileInfo(path() + ".1").size(), limit);
    EXPECT_TRUE(lines(path()).last().endsWith("line 199"));
}

TEST_F(LogFileTest, FileThatCannotBeRenamedIsStillLimited)
{
    // The path for the old file is taken by a folder that is not empty.
    ASSERT_TRUE(QDir(directory.path()).mkpath("MarvikTools.log.1/x"));
    constexpr qint64 limit = 1000;
    const LogFile log(directory.path(), limit);
    for (int i = 0; i < 100; ++i)
        qDebug("line %d", i);
    EXPECT_LE(QFileInfo(path()).size(), limit);
    EXPECT_TRUE(lines(path()).last().endsWith("line 99"));
}

TEST_F(LogFileTest, DirectoryThatCannotBeMadeLeavesStandardError)
{
    QFile obstacle(directory.filePath("file"));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    ::testing::internal::CaptureStderr();
    {
        const LogFile log(directory.filePath("file/logs"));
        qDebug("still here");
    }
    const std::string errors = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(errors.find("no log file at "), std::string::npos);
    EXPECT_NE(errors.find("still here\n"), std::string::npos);
}

TEST_F(LogFileTest, PreviousHandlerIsRestored)
{
    s_previousHandlerCalls = 0;
    const QtMessageHandler before = qInstallMessageHandler(countingHandler);
    {
        const LogFile log(directory.path());
        qDebug("mine");
        EXPECT_EQ(s_previousHandlerCalls, 0);
    }
    qDebug("yours");
    qInstallMessageHandler(before);
    EXPECT_EQ(s_previousHandlerCalls, 1);
    EXPECT_EQ(lines(path()).size(), 1);
}

TEST_F(LogFileTest, LinesOfSeveralThreadsAreNotMixed)
{
    constexpr int threads = 4;
    constexpr int perThread = 200;
    {
        const LogFile log(directory.path());
        std::vector<std::thread> writers;
        writers.reserve(threads);
        for (int i = 0; i < threads; ++i) {
            writers.emplace_back([] {
                for (int line = 0; line < perThread; ++line)
                    qDebug("a line of some length, whole from its start to its end");
            });
        }
        for (std::thread& writer : writers)
            writer.join();
    }
    const QList<QByteArray> written = lines(path());
    EXPECT_EQ(written.size(), threads * perThread);
    for (const QByteArray& line : written)
        EXPECT_TRUE(line.endsWith(") a line of some length, whole from its start to its end"));
}
