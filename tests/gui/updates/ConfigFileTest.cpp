#include "AboutPage.h"
#include "LogCapture.h"
#include "ScriptedHidapi.h"
#include "ScriptedVideo.h"
#include "SorvantaHome.h"

#include <cstdio>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr const char* kChild = "--main-window";
constexpr int kTimeoutMs = 30000;

QString shownVersion(const QObject& parent)
{
    return parent.findChild<QLabel*>(QStringLiteral("labVersionCode"))->text();
}

} // namespace

/// The configuration file beside the program: this program is copied to a folder with a file of the
/// test, creates the main window there, and prints the shown version and its log.
class ConfigFileTest : public QObject
{
    Q_OBJECT

public:
    static int child();

private slots:
    void lastEntryIsShown();
    void missingFileLeavesThePlaceholder();
    void brokenFileLeavesThePlaceholder();

private:
    /// @param config content of the file; null means no file
    bool start(const QByteArray& config);

    QString m_version;
    QString m_log;
};

int ConfigFileTest::child()
{
    const ScriptedHidapi hidapi;
    const ScriptedVideo video;
    const LogCapture log;
    const SorvantaHome window;
    std::printf("%s\n%s", qUtf8Printable(shownVersion(window)),
                qUtf8Printable(log.texts().join(QLatin1Char('\n'))));
    return 0;
}

bool ConfigFileTest::start(const QByteArray& config)
{
    const QTemporaryDir directory;
    const QString program = directory.filePath(QStringLiteral("ConfigFileTest"));
    if (!QFile::copy(QCoreApplication::applicationFilePath(), program))
        return false;
    QFile file(directory.filePath(QStringLiteral("config.json")));
    if (!config.isNull() &&
        (!file.open(QIODevice::WriteOnly) || file.write(config) != config.size()))
        return false;
    file.close();
    QProcess process;
    process.start(program, {QLatin1String(kChild)});
    if (!process.waitForFinished(kTimeoutMs) || process.exitCode() != 0)
        return false;
    const QString said = QString::fromUtf8(process.readAllStandardOutput());
    m_version = said.section(QLatin1Char('\n'), 0, 0);
    m_log = said.section(QLatin1Char('\n'), 1);
    return true;
}

void ConfigFileTest::lastEntryIsShown()
{
    QVERIFY(start(R"({"other":1,"versionInfo":[)"
                  R"({"version":"1.0.0","hashcode":"111111"},)"
                  R"({"version":"2.3.4","hashcode":"222222"}]})"));
    QCOMPARE(m_version, QStringLiteral("Version：V2.3.4(222222)"));
    QVERIFY2(m_log.contains(QStringLiteral("\"other\"")), qPrintable(m_log));
}

void ConfigFileTest::missingFileLeavesThePlaceholder()
{
    QVERIFY(start({}));
    QCOMPARE(m_version, shownVersion(AboutPage()));
    QVERIFY2(m_log.contains(QStringLiteral("fail to open the file: ")), qPrintable(m_log));
}

void ConfigFileTest::brokenFileLeavesThePlaceholder()
{
    QVERIFY(start("{\"versionInfo\":"));
    QCOMPARE(m_version, shownVersion(AboutPage()));
    QVERIFY2(m_log.contains(QStringLiteral("JsonParseError: ")), qPrintable(m_log));
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1String(kChild))
        return ConfigFileTest::child();
    ConfigFileTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ConfigFileTest.moc"
