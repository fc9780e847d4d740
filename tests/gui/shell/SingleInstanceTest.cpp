#include "Pointer.h"

#include <csignal>
#include <memory>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString answerOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// One user's runtime directory and home.
class User
{
public:
    User()
    {
        QFile::setPermissions(m_directory.path(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    [[nodiscard]] QString directory() const { return m_directory.path(); }
    [[nodiscard]] QString lockFile() const { return m_directory.filePath("marviktools.lock"); }
    [[nodiscard]] QString socket() const { return m_directory.filePath("marviktools.socket"); }
    [[nodiscard]] QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_directory.path());
        environment.insert(QStringLiteral("HOME"), m_directory.path());
        return environment;
    }

private:
    QTemporaryDir m_directory;
};

/// A running program; the destructor ends it.
class Program
{
public:
    explicit Program(const User& user)
        : Program(user.environment(), QStringLiteral(MARVIK_PROGRAM), {})
    {
    }
    Program(const QProcessEnvironment& environment, const QString& command,
            const QStringList& arguments)
    {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(command, arguments);
        m_process.waitForStarted();
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Its windows on the screen.
    [[nodiscard]] QStringList windows() const
    {
        return answerOf(QStringLiteral("xdotool"),
                        {QStringLiteral("search"), QStringLiteral("--all"),
                         QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                         QString::number(m_process.processId()), QStringLiteral("--name"),
                         QStringLiteral("^MarvikTools$")})
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    [[nodiscard]] bool isShown() const { return windows().size() == 1; }
    [[nodiscard]] bool waitForWindow() const
    {
        return QTest::qWaitFor([this] { return isShown(); }, 20000);
    }
    [[nodiscard]] QPoint place() const
    {
        const QString answer =
            answerOf(QStringLiteral("xdotool"), {QStringLiteral("getwindowgeometry"),
                                                 QStringLiteral("--shell"), windows().value(0)});
        const auto number = [&answer](const char* name) {
            const QStringList lines = answer.split(QLatin1Char('\n'));
            const QString key = QLatin1String(name) + QLatin1Char('=');
            for (const QString& line : lines) {
                if (line.startsWith(key))
                    return line.mid(key.size()).toInt();
            }
            return -1;
        };
        return {number("X"), number("Y")};
    }
    /// Clicks the button that hides the window.
    [[nodiscard]] bool closeWindow() const
    {
        constexpr QPoint closeButton(336, 18);
        Pointer::clickAt(place() + closeButton);
        return QTest::qWaitFor([this] { return windows().isEmpty(); });
    }
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
    [[nodiscard]] bool waitForEnd(int timeoutMs = 20000)
    {
        return QTest::qWaitFor([this] { return !isRunning(); }, timeoutMs);
    }
    [[nodiscard]] int exitCode() const
    {
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    /// Kills it without warning, as the kernel does when memory is short.
    void crash()
    {
        ::kill(static_cast<pid_t>(m_process.processId()), SIGKILL);
        m_process.waitForFinished();
    }
    [[nodiscard]] QByteArray output() { return m_process.readAll(); }

private:
    QProcess m_process;
};

} // namespace

/// Several starts of the program.
class SingleInstanceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void secondStartEndsWithoutAWindow();
    void secondStartBringsTheHiddenWindowBack();
    void startAfterACrashIsAFirstStart();
    void socketIsOfTheUserAlone();
    void twoUsersDoNotMeet();
    void noiseOnTheSocketChangesNothing();
    void lockFileThatNobodyHoldsDoesNotPreventTheStart_data();
    void lockFileThatNobodyHoldsDoesNotPreventTheStart();
    void programStartsOnAFullDisk();
    void damagedLockFileOfARunningProgramStillCounts();

private:
    std::unique_ptr<User> m_user;
    std::unique_ptr<Program> m_first;
};

void SingleInstanceTest::init()
{
    Pointer::park();
    m_user = std::make_unique<User>();
    m_first = std::make_unique<Program>(*m_user);
    QVERIFY2(m_first->waitForWindow(), m_first->output().constData());
}

void SingleInstanceTest::cleanup()
{
    m_first.reset();
    m_user.reset();
}

void SingleInstanceTest::secondStartEndsWithoutAWindow()
{
    QElapsedTimer clock;
    clock.start();
    Program second(*m_user);
    bool hadWindow = false;
    while (second.isRunning() && clock.elapsed() < 20000) {
        hadWindow = hadWindow || !second.windows().isEmpty();
        QTest::qWait(10);
    }
    QVERIFY(!second.isRunning());
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(!hadWindow);
    QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(m_first->isRunning());
    QVERIFY(m_first->isShown());
}

void SingleInstanceTest::secondStartBringsTheHiddenWindowBack()
{
    const QPoint place = m_first->place();
    QVERIFY(m_first->closeWindow());
    QVERIFY(m_first->isRunning());
    Program second(*m_user);
    QVERIFY(m_first->waitForWindow());
    QVERIFY(second.waitForEnd());
    QCOMPARE(second.exitCode(), 0);
    QTRY_COMPARE(m_first->place(), place);
}

void SingleInstanceTest::startAfterACrashIsAFirstStart()
{
    m_first->crash();
    QVERIFY(QFileInfo::exists(m_user->socket()));
    Program second(*m_user);
    QVERIFY2(second.waitForWindow(), second.output().constData());
    QVERIFY(second.closeWindow());
    Program third(*m_user);
    QVERIFY(third.waitForEnd());
    QCOMPARE(third.exitCode(), 0);
    QVERIFY(second.waitForWindow());
}

void SingleInstanceTest::socketIsOfTheUserAlone()
{
    constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    const QFileInfo socket(m_user->socket());
    QVERIFY(socket.exists());
    QCOMPARE(socket.permissions() & others, QFile::Permissions());
}

void SingleInstanceTest::twoUsersDoNotMeet()
{
    const User other;
    Program theirs(other);
    QVERIFY2(theirs.waitForWindow(), theirs.output().constData());
    QVERIFY(m_first->isRunning());
    QVERIFY(theirs.closeWindow());
    Program second(*m_user);
    QVERIFY(second.waitForEnd());
    QTest::qWait(200);
    QVERIFY(theirs.windows().isEmpty());
    QVERIFY(m_first->isShown());
}

void SingleInstanceTest::noiseOnTheSocketChangesNothing()
{
    QVERIFY(m_first->closeWindow());
    const QByteArray noises[] = {QByteArray(100000, 'x'), QByteArray("\xFF\xFE\0", 3),
                                 QByteArray("no end")};
    for (const QByteArray& noise : noises) {
        QLocalSocket socket;
        socket.connectToServer(m_user->socket());
        QVERIFY(socket.waitForConnected(2000));
        socket.write(noise);
        socket.waitForBytesWritten(500);
        QTest::qWait(50);
    }
    QTest::qWait(200);
    QVERIFY(m_first->isRunning());
    QVERIFY(m_first->windows().isEmpty());
    Program second(*m_user);
    QVERIFY(m_first->waitForWindow());
}

void SingleInstanceTest::lockFileThatNobodyHoldsDoesNotPreventTheStart_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xFF no lock\n\n\n", 14);
    QTest::newRow("of a dead process under another host name")
        << QByteArray("4194304\nMarvikTools\nold-name\n");
}

void SingleInstanceTest::lockFileThatNobodyHoldsDoesNotPreventTheStart()
{
    QFETCH(const QByteArray, content);
    const User other;
    QFile file(other.lockFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    Program program(other);
    QVERIFY2(program.waitForWindow(), program.output().constData());
    Program second(other);
    QVERIFY(second.waitForEnd());
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(program.isShown());
}

void SingleInstanceTest::programStartsOnAFullDisk()
{
    const User other;
    // No file can grow, as on a full disk: the lock file is created, but nothing can be written.
    Program program(other.environment(), QStringLiteral("sh"),
                    {QStringLiteral("-c"), QStringLiteral("trap '' XFSZ; ulimit -f 0; exec \"$0\""),
                     QStringLiteral(MARVIK_PROGRAM)});
    QVERIFY(program.waitForWindow());
    QVERIFY(program.output().contains("A second start of the program is not noticed"));
}

void SingleInstanceTest::damagedLockFileOfARunningProgramStillCounts()
{
    QFile file(m_user->lockFile());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.close();
    Program second(*m_user);
    QVERIFY(second.waitForEnd());
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(m_first->isShown());
}

QTEST_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
