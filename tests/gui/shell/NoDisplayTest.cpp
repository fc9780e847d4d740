#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// The program is started where it cannot open a window.
class NoDisplayTest : public QObject
{
    Q_OBJECT

private slots:
    void endsWithOneSentence_data();
    void endsWithOneSentence();
};

void NoDisplayTest::endsWithOneSentence_data()
{
    QTest::addColumn<QString>("display");
    QTest::addColumn<QString>("waylandDisplay");
    QTest::newRow("no display is named") << QString() << QString();
    QTest::newRow("the X server is gone") << QStringLiteral(":4711") << QString();
    QTest::newRow("both are gone") << QStringLiteral(":4711") << QStringLiteral("wayland-4711");
}

void NoDisplayTest::endsWithOneSentence()
{
    QFETCH(const QString, display);
    QFETCH(const QString, waylandDisplay);
    const QTemporaryDir user;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), user.path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), user.path());
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(name));
    if (!display.isEmpty())
        environment.insert(QStringLiteral("DISPLAY"), display);
    if (!waylandDisplay.isEmpty())
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), waylandDisplay);

    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(MARVIK_PROGRAM), {});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 1);
    const QString said = QString::fromUtf8(program.readAllStandardError());
    QVERIFY2(said.startsWith(QStringLiteral("MarvikTools cannot start: ")), qPrintable(said));
    QCOMPARE(said.count(QLatin1Char('\n')), 1);
    QVERIFY(said.endsWith(QStringLiteral(".\n")));
}

QTEST_GUILESS_MAIN(NoDisplayTest)
#include "NoDisplayTest.moc"
