#include "Log.h"
#include "setLogObserver.h"

#include <gtest/gtest.h>
#include <QStringList>

using Brivane::ILogObserver;

namespace {

class Lines : public ILogObserver
{
public:
    Lines() { Brivane::setLogObserver(this); }
    ~Lines() override { Brivane::setLogObserver(nullptr); }

    void onPrintLog(std::int32_t level, std::string text) override
    {
        texts += QString::number(level) + ' ' + QString::fromStdString(text);
    }

    QStringList texts;
};

QStringList s_messages;

void keepMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    s_messages += QString("%1 %2 %3").arg(type).arg(context.category, text);
}

class LogTest : public ::testing::Test
{
protected:
    void SetUp() override { m_before = qInstallMessageHandler(keepMessage); }
    void TearDown() override
    {
        qInstallMessageHandler(m_before);
        s_messages.clear();
        QLoggingCategory::setFilterRules({});
    }

private:
    QtMessageHandler m_before = nullptr;
};

} // namespace

TEST_F(LogTest, WithoutAnObserverLinesGoToQtsLog)
{
    Brivane::log(ILogObserver::Info, "line %1");
    Brivane::log(ILogObserver::Warning, "warning");
    Brivane::log(ILogObserver::Error, "error");
    const QString name(" marvik.net ");
    EXPECT_EQ(s_messages, (QStringList{QString::number(QtInfoMsg) + name + "line %1",
                                       QString::number(QtWarningMsg) + name + "warning",
                                       QString::number(QtCriticalMsg) + name + "error"}));
}

TEST_F(LogTest, WithAnObserverLinesGoToItAlone)
{
    const Lines lines;
    Brivane::log(ILogObserver::Info, "line");
    EXPECT_EQ(lines.texts, QStringList("1 line"));
    EXPECT_EQ(s_messages, QStringList());
}

TEST_F(LogTest, TheRulesOfTheCategoryHoldWithAndWithoutAnObserver)
{
    QLoggingCategory::setFilterRules("marvik.net.info=false");
    Brivane::log(ILogObserver::Info, "line");
    const Lines lines;
    Brivane::log(ILogObserver::Info, "line");
    Brivane::log(ILogObserver::Warning, "warning");
    EXPECT_EQ(lines.texts, QStringList("2 warning"));
    EXPECT_EQ(s_messages, QStringList());
}
