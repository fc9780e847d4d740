#include "ProgramWindow.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QSettings>
#include <QStandardPaths>
#include <QtTest>

namespace {

constexpr int kTimeoutMs = 60000;

QString localData()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QVariant uninstallValue(const char* name)
{
    return QSettings(QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\"
                                    "CurrentVersion\\Uninstall\\MarvikTools"),
                     QSettings::NativeFormat)
        .value(QLatin1String(name));
}

/// Runs @p program and waits for it; -1 when it does not end in time.
int run(const QString& program, const QString& arguments)
{
    QProcess process;
    process.setNativeArguments(arguments);
    process.start(program, {});
    return process.waitForFinished(kTimeoutMs) ? process.exitCode() : -1;
}

} // namespace

/// The installer, as a user runs it without questions, in a separate Wine prefix.
class InstallerTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void installsOnlyForTheUser();
    void installedProgramStarts();
    void folderWithSpacesCanBeChosen();
    void upgradeClosesTheRunningProgram();
    void upgradeRemovesOldFiles();
    void uninstallingKeepsTheSettings();
    void uninstallingRemovesTheSettingsOnRequest();
    void uninstallingKeepsFilesOfOthers();

private:
    static int install(const QString& folder = QString())
    {
        return run(QStringLiteral(MARVIK_SETUP),
                   folder.isEmpty() ? QStringLiteral("/S")
                                    : QStringLiteral("/S /D=") + QDir::toNativeSeparators(folder));
    }
    /// Runs the uninstaller from the system's list of programs. It continues as a copy of itself,
    /// so its end can be seen only from the removed files.
    static void uninstall(const QString& more = QString())
    {
        const QString command = uninstallValue("QuietUninstallString").toString();
        if (!command.isEmpty())
            run(command.section(QLatin1Char('"'), 1, 1), QStringLiteral("/S ") + more);
    }
    static QString folder() { return uninstallValue("InstallLocation").toString(); }
    static QString file(const QString& name) { return folder() + QLatin1Char('/') + name; }
    static QString shortcut()
    {
        return QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation) +
               QStringLiteral("/MarvikTools.lnk");
    }
    /// The settings of a camera, as the program stores them.
    static QString storeSettings()
    {
        const QString folder = localData() + QStringLiteral("/MarvikTools/cache");
        QDir().mkpath(folder);
        QFile settings(folder + QStringLiteral("/device.ini"));
        if (settings.open(QIODevice::WriteOnly))
            settings.write("[SN1]\nbright=1\n");
        return settings.fileName();
    }
};

void InstallerTest::cleanup()
{
    if (programWindow()) {
        const WindowProcess program(programWindow());
        program.quit();
        QVERIFY(program.waitForEnd(kTimeoutMs));
    }
    uninstall(QStringLiteral("/SETTINGS"));
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs);
}

void InstallerTest::installsOnlyForTheUser()
{
    QCOMPARE(install(), 0);
    QCOMPARE(QDir::cleanPath(QDir::fromNativeSeparators(folder())),
             QDir::cleanPath(localData() + QStringLiteral("/Programs/MarvikTools")));
    QVERIFY(QFileInfo::exists(file("MarvikTools.exe")));
    QVERIFY(QFileInfo::exists(file("config.json")));
    QVERIFY(QFileInfo::exists(file("platforms/qwindows.dll")));
    QVERIFY(QFileInfo::exists(file("Uninstall.exe")));
    QVERIFY(QFileInfo::exists(shortcut()));
    QCOMPARE(uninstallValue("DisplayVersion").toString(), QString(MARVIK_VERSION));
    QVERIFY(uninstallValue("UninstallString").toString().startsWith(QLatin1Char('"')));
    QVERIFY(!uninstallValue("EstimatedSize").toString().isEmpty());

    uninstall();
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(
        !QFileInfo::exists(localData() + QStringLiteral("/Programs/MarvikTools")), kTimeoutMs);
    QVERIFY(!QFileInfo::exists(shortcut()));
}

void InstallerTest::installedProgramStarts()
{
    QCOMPARE(install(), 0);
    // Libraries can be found only in its own folder and in the system's.
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), QStringLiteral("C:\\windows\\system32;C:\\windows"));
    environment.remove(QStringLiteral("WINEPATH"));
    program.setProcessEnvironment(environment);
    program.start(file("MarvikTools.exe"), {});
    QTRY_VERIFY_WITH_TIMEOUT(programWindow() && ::IsWindowVisible(programWindow()), kTimeoutMs);
    WindowProcess(programWindow()).quit();
    QVERIFY(program.waitForFinished(kTimeoutMs));
    QCOMPARE(program.exitCode(), 0);
}

void InstallerTest::folderWithSpacesCanBeChosen()
{
    const QString chosen = localData() + QStringLiteral("/A B/会议 Tools");
    QCOMPARE(install(chosen), 0);
    QCOMPARE(QDir::cleanPath(QDir::fromNativeSeparators(folder())), QDir::cleanPath(chosen));
    QVERIFY(QFileInfo::exists(chosen + QStringLiteral("/MarvikTools.exe")));
    uninstall();
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(chosen), kTimeoutMs);
}

void InstallerTest::upgradeClosesTheRunningProgram()
{
    QCOMPARE(install(), 0);
    QVERIFY(QProcess::startDetached(file("MarvikTools.exe"), {}));
    QTRY_VERIFY_WITH_TIMEOUT(programWindow() && ::IsWindowVisible(programWindow()), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(::FindWindowA("velmarin", nullptr), kTimeoutMs);
    const WindowProcess program(programWindow());
    // As an open folder of that name has it.
    HWND folderWindow = ::CreateWindowExW(0, L"STATIC", L"MarvikTools", WS_POPUP, 0, 0, 10, 10,
                                          nullptr, nullptr, nullptr, nullptr);
    QVERIFY(folderWindow);
    const auto closeFolder = qScopeGuard([folderWindow] { ::DestroyWindow(folderWindow); });
    QCOMPARE(install(), 0);
    QVERIFY(program.waitForEnd(0));
    QCOMPARE(program.exitCode(), DWORD{0});
    QVERIFY(QFileInfo::exists(file("MarvikTools.exe")));
}

void InstallerTest::upgradeRemovesOldFiles()
{
    const QString before = localData() + QStringLiteral("/Old Place");
    QCOMPARE(install(before), 0);
    const QString settings = storeSettings();
    const QString after = localData() + QStringLiteral("/New Place");
    QCOMPARE(install(after), 0);
    QCOMPARE(QDir::cleanPath(QDir::fromNativeSeparators(folder())), QDir::cleanPath(after));
    QVERIFY(!QFileInfo::exists(before));
    QVERIFY(QFileInfo::exists(settings));
}

void InstallerTest::uninstallingKeepsTheSettings()
{
    QCOMPARE(install(), 0);
    const QString settings = storeSettings();
    uninstall();
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs);
    QVERIFY(QFileInfo::exists(settings));
}

void InstallerTest::uninstallingRemovesTheSettingsOnRequest()
{
    QCOMPARE(install(), 0);
    const QString settings = storeSettings();
    uninstall(QStringLiteral("/SETTINGS"));
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(settings), kTimeoutMs);
}

void InstallerTest::uninstallingKeepsFilesOfOthers()
{
    QCOMPARE(install(), 0);
    const QString place = folder();
    QFile other(file("notes.txt"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.close();
    uninstall();
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(place + QStringLiteral("/MarvikTools.exe")),
                             kTimeoutMs);
    QVERIFY(other.exists());
    QVERIFY(other.remove());
    QVERIFY(QDir().rmdir(place));
}

QTEST_GUILESS_MAIN(InstallerTest)
#include "InstallerTest.moc"
