#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// What the program makes of the file beside it.
class ConfigFileTest : public QObject
{
    Q_OBJECT

private slots:
    void lastEntryIsShown();
    void missingFileLeavesTheVersionEmpty();
    void brokenFileLeavesTheVersionEmpty();

private:
    /// The log of a program that starts with @p config beside it; none for null.
    static QString logWith(const QByteArray& config, const QString& until);
};

QString ConfigFileTest::logWith(const QByteArray& config, const QString& until)
{
    const QTemporaryDir directory;
    const QString program = directory.filePath(QStringLiteral("MarvikTools"));
    if (!QFile::copy(QStringLiteral(MARVIK_PROGRAM), program))
        return {};
    if (!config.isNull()) {
        QFile file(directory.filePath(QStringLiteral("config.json")));
        if (!file.open(QIODevice::WriteOnly))
            return {};
        file.write(config);
    }
    QFile::setPermissions(directory.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), directory.path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), directory.path());
    environment.remove(QStringLiteral("QT_LOGGING_RULES"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, {});
    QString log;
    const bool found = QTest::qWaitFor(
        [&] {
            process.waitForReadyRead(20);
            log += QString::fromUtf8(process.readAll());
            return log.contains(until);
        },
        20000);
    process.kill();
    process.waitForFinished();
    return found ? log : QStringLiteral("not found: ") + until + log;
}

void ConfigFileTest::lastEntryIsShown()
{
    const QString log = logWith(R"({"other":1,"versionInfo":[)"
                                R"({"version":"1.0.0","hashcode":"111111"},)"
                                R"({"version":"2.3.4","hashcode":"222222"}]})",
                                QStringLiteral("2.3.4"));
    const int first = log.indexOf(QStringLiteral("1.0.0"));
    const int last = log.indexOf(QStringLiteral("2.3.4"));
    QVERIFY2(first >= 0 && last > first, qPrintable(log));
    QVERIFY(log.contains(QStringLiteral("\"other\"")));
}

void ConfigFileTest::missingFileLeavesTheVersionEmpty()
{
    const QString log = logWith({}, QStringLiteral("SorvantaHome::readConfigFile"));
    QVERIFY2(log.contains(QStringLiteral("fail to open the file: ")), qPrintable(log));
    QVERIFY(!log.contains(QStringLiteral("SCW")));
}

void ConfigFileTest::brokenFileLeavesTheVersionEmpty()
{
    const QString log = logWith("{\"versionInfo\":", QStringLiteral("JsonParseError: "));
    QVERIFY2(log.contains(QStringLiteral("JsonParseError: ")), qPrintable(log));
    QVERIFY(!log.contains(QStringLiteral("SCW")));
}

QTEST_MAIN(ConfigFileTest)
#include "ConfigFileTest.moc"
