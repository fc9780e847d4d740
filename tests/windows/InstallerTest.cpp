#include "Installation.h"
#include "ProgramMutexNames.h"
#include "ProgramWindow.h"
#include "Wine.h"

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QtTest>

using namespace Installation;

namespace {

/// What the installer ends with, beside 0.
enum Status {
    AtWork = 10,
    NotWritten = 11,
    IsSystem = 13,
};

/// Whether a program has a signature; its place is in the fifth entry of the table of directories.
bool isSigned(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(4096);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(head.constData());
    const auto* program =
        reinterpret_cast<const IMAGE_NT_HEADERS64*>(head.constData() + dos->e_lfanew);
    return program->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_SECURITY].Size > 0;
}

QVariant uninstallValue(const char* name)
{
    return entry(QStringLiteral("HKEY_CURRENT_USER"), QLatin1String(name));
}

QString shortcut()
{
    return QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation) +
           QStringLiteral("/MarvikTools.lnk");
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
    void upgradeKeepsFilesOfOthers();
    void upgradeFromTheFolderOfTheProgram();
    void upgradeAfterACutOffOne();
    void programAtWorkIsLeftAlone();
    void programThatDoesNotEndIsLeftAlone();
    void programOfAnotherSessionIsLeftAlone();
    void failureToWriteKeepsTheOldVersion();
    void failureAfterTheSwapKeepsTheOldVersion();
    void openFileKeepsTheOldVersion();
    void failedFirstInstallationLeavesNothing();
    void systemAccountIsRefused();
    void uninstallingKeepsTheSettings();
    void uninstallingRemovesTheSettingsOnRequest();
    void uninstallingKeepsFilesOfOthers();
    void uninstallingCanBeTriedAgain();
    void uninstallerIsSignedLikeItsInstaller();

private:
    static int install(const QString& folder = QString(), const QString& in = QString())
    {
        return run(QStringLiteral(MARVIK_SETUP),
                   folder.isEmpty() ? QStringLiteral("/S")
                                    : QStringLiteral("/S /D=") + QDir::toNativeSeparators(folder),
                   in);
    }
    static int installOld() { return run(QStringLiteral(MARVIK_OLD_SETUP), QStringLiteral("/S")); }
    /// Runs the uninstaller from the system's list of programs. It continues as a copy of itself,
    /// so its end can be seen only from the removed files.
    static void uninstall(const QString& more = QString())
    {
        const QString command = uninstallValue("QuietUninstallString").toString();
        if (!command.isEmpty())
            run(command.section(QLatin1Char('"'), 1, 1), QStringLiteral("/S ") + more);
    }
    /// Runs the uninstaller where it lies, so that it returns a status and leaves itself.
    static int uninstallInPlace()
    {
        return run(file("Uninstall.exe"),
                   QStringLiteral("/S _?=") + QDir::toNativeSeparators(folder()));
    }
    static QString folder() { return uninstallValue("InstallLocation").toString(); }
    static QString file(const QString& name) { return folder() + QLatin1Char('/') + name; }
    static QString version() { return uninstallValue("DisplayVersion").toString(); }
    /// No folder of an installation that did not come to its end.
    static bool isTidy()
    {
        return !QFileInfo::exists(folder() + QStringLiteral(".old-version")) &&
               !QFileInfo::exists(folder() + QStringLiteral(".new-version"));
    }
    static QString dataFolder() { return localData() + QStringLiteral("/MarvikTools"); }
    /// What the program stores: the settings of a camera, its log, a downloaded package.
    static QStringList storeData()
    {
        QDir().mkpath(dataFolder() + QStringLiteral("/cache"));
        QStringList names{QStringLiteral("/MarvikTools.log"), QStringLiteral("/MarvikTools.log.1"),
                          QStringLiteral("/cache/device.ini"), QStringLiteral("/cache/fw.bin"),
                          QStringLiteral("/cache/fw.bin.AbCdEf")};
        for (const QString& name : qAsConst(names))
            writeFile(dataFolder() + name);
        return names;
    }
    static QStringList storedData() { return fileNames(dataFolder()); }
    /// Everything that an installation changes.
    static QVariantMap state()
    {
        QVariantMap state;
        const auto files = contents(folder());
        for (auto file = files.begin(); file != files.end(); ++file)
            state.insert(file.key(), file.value());
        for (const char* name : {"InstallLocation", "DisplayVersion", "UninstallString"})
            state.insert(QLatin1String(name), uninstallValue(name));
        return state;
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
    QDir(dataFolder()).removeRecursively();
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
    QVERIFY(isThere(shortcut()));
    QVERIFY(isTidy());
    QCOMPARE(version(), QString(MARVIK_VERSION));
    QVERIFY(uninstallValue("UninstallString").toString().startsWith(QLatin1Char('"')));
    QVERIFY(uninstallValue("EstimatedSize").toInt() > 10000);
    QVERIFY(entry(QStringLiteral("HKEY_LOCAL_MACHINE"), QStringLiteral("DisplayName")).isNull());

    uninstall();
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(
        !QFileInfo::exists(localData() + QStringLiteral("/Programs/MarvikTools")), kTimeoutMs);
    QVERIFY(!isThere(shortcut()));
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
    const QStringList data = storeData();
    const QString after = localData() + QStringLiteral("/New Place");
    QCOMPARE(install(after), 0);
    QCOMPARE(QDir::cleanPath(QDir::fromNativeSeparators(folder())), QDir::cleanPath(after));
    QVERIFY(!QFileInfo::exists(before));
    QVERIFY(isThere(shortcut()));
    QCOMPARE(storedData(), data);
}

void InstallerTest::upgradeKeepsFilesOfOthers()
{
    QCOMPARE(installOld(), 0);
    QCOMPARE(version(), QStringLiteral("0.9.0"));
    QVERIFY(QFileInfo::exists(file("old.txt")));
    const QStringList others{file("notes.txt"), file("platforms/notes.txt"),
                             file("mine/notes.txt")};
    QVERIFY(QDir().mkdir(file("mine")));
    for (const QString& other : others)
        QVERIFY(writeFile(other));

    QCOMPARE(install(), 0);
    QCOMPARE(version(), QString(MARVIK_VERSION));
    QVERIFY(isThere(shortcut()));
    QVERIFY(isTidy());
    QVERIFY(!QFileInfo::exists(file("old.txt")));
    QVERIFY(!QFileInfo::exists(file("platforms/old.txt")));
    QVERIFY(QFileInfo(file("config.json")).size() > 100);
    for (const QString& other : others) {
        QVERIFY2(QFileInfo::exists(other), qPrintable(other));
        QVERIFY(QFile::remove(other));
    }
    QVERIFY(QDir().rmdir(file("mine")));
}

/// The program starts the installer of a new version in its own folder.
void InstallerTest::upgradeFromTheFolderOfTheProgram()
{
    QCOMPARE(installOld(), 0);
    QCOMPARE(install({}, folder()), 0);
    QCOMPARE(version(), QString(MARVIK_VERSION));
    QVERIFY(isTidy());
}

/// The computer went off while the old folder had its other name.
void InstallerTest::upgradeAfterACutOffOne()
{
    QCOMPARE(installOld(), 0);
    QVERIFY(writeFile(file("notes.txt")));
    const QString place = folder();
    QVERIFY(QDir().rename(place, place + QStringLiteral(".old-version")));
    QVERIFY(QDir().mkpath(place + QStringLiteral(".new-version/platforms")));
    QCOMPARE(install(), 0);
    QVERIFY(isTidy());
    QVERIFY(QFileInfo::exists(file("MarvikTools.exe")));
    QVERIFY(!QFileInfo::exists(file("old.txt")));
    QVERIFY(QFile::remove(file("notes.txt")));

    // Or when both were there.
    QVERIFY(QDir().mkpath(place + QStringLiteral(".old-version/mine")));
    QVERIFY(writeFile(place + QStringLiteral(".old-version/mine/notes.txt")));
    QCOMPARE(install(), 0);
    QVERIFY(isTidy());
    QVERIFY(QFile::remove(file("mine/notes.txt")));
    QVERIFY(QDir().rmdir(file("mine")));
}

/// After "Quit" the windows are gone, and the process lives until the camera is written.
void InstallerTest::programAtWorkIsLeftAlone()
{
    {
        const HeldMutex program(ProgramMutexNames::kSession);
        QVERIFY(program.isHeld());
        QCOMPARE(install(), int(AtWork));
        QVERIFY(folder().isEmpty());
        QVERIFY(!QFileInfo::exists(localData() + QStringLiteral("/Programs/MarvikTools")));
    }
    QCOMPARE(installOld(), 0);
    const QVariantMap before = state();
    {
        const HeldMutex program(ProgramMutexNames::kSession);
        QCOMPARE(install(), int(AtWork));
        QCOMPARE(state(), before);
        QVERIFY(isTidy());
        QCOMPARE(uninstallInPlace(), int(AtWork));
        QCOMPARE(state(), before);
        QVERIFY(isThere(shortcut()));
    }
    QCOMPARE(install(), 0);
    QCOMPARE(version(), QString(MARVIK_VERSION));
}

/// The real program, which is kept from reacting.
void InstallerTest::programThatDoesNotEndIsLeftAlone()
{
    QCOMPARE(install(), 0);
    QVERIFY(QProcess::startDetached(file("MarvikTools.exe"), {}));
    QTRY_VERIFY_WITH_TIMEOUT(programWindow() && ::IsWindowVisible(programWindow()), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(::FindWindowA("velmarin", nullptr), kTimeoutMs);
    const WindowProcess program(programWindow());
    const QVariantMap before = state();
    HANDLE thread = ::OpenThread(THREAD_SUSPEND_RESUME, FALSE,
                                 ::GetWindowThreadProcessId(programWindow(), nullptr));
    QVERIFY(::SuspendThread(thread) == 0);
    const auto resume = qScopeGuard([thread] {
        ::ResumeThread(thread);
        ::CloseHandle(thread);
    });
    QCOMPARE(install(), int(AtWork));
    QCOMPARE(state(), before);
    QVERIFY(isTidy());
    QVERIFY(!program.waitForEnd(0));
    QCOMPARE(uninstallInPlace(), int(AtWork));
    QCOMPARE(state(), before);
}

/// The program of the same user in a remote session has a mutex there; its file cannot be written.
void InstallerTest::programOfAnotherSessionIsLeftAlone()
{
    QCOMPARE(installOld(), 0);
    const QVariantMap before = state();
    const HeldFile program(file("MarvikTools.exe"));
    QVERIFY(program.isHeld());
    QCOMPARE(install(), int(AtWork));
    QCOMPARE(state(), before);
    QVERIFY(isTidy());
    QCOMPARE(uninstallInPlace(), int(AtWork));
    QCOMPARE(state(), before);
}

void InstallerTest::failureToWriteKeepsTheOldVersion()
{
    QCOMPARE(installOld(), 0);
    const QVariantMap before = state();
    const QString place = folder() + QStringLiteral(".new-version");
    QVERIFY(writeFile(place));
    {
        const HeldFile blocked(place);
        QVERIFY(blocked.isHeld());
        QCOMPARE(install(), int(NotWritten));
    }
    QCOMPARE(state(), before);
    QVERIFY(isThere(shortcut()));
    QVERIFY(QFile::remove(place));
}

void InstallerTest::failureAfterTheSwapKeepsTheOldVersion()
{
    QCOMPARE(installOld(), 0);
    const QVariantMap before = state();
    // No shortcut can be written to the place of a folder.
    QVERIFY(QFile::remove(shortcut()));
    QVERIFY(QDir().mkdir(shortcut()));
    QCOMPARE(install(), int(NotWritten));
    QVERIFY(QDir().rmdir(shortcut()));
    QCOMPARE(state(), before);
    QVERIFY(isTidy());
}

void InstallerTest::openFileKeepsTheOldVersion()
{
    QCOMPARE(installOld(), 0);
    const QVariantMap before = state();
    {
        const HeldFile opened(file("old.txt"));
        QVERIFY(opened.isHeld());
        if (isWine()) {
            // Wine renames a folder although a file in it is open, and the file stays.
            QCOMPARE(install(), 0);
            QCOMPARE(version(), QString(MARVIK_VERSION));
        } else {
            QCOMPARE(install(), int(NotWritten));
            QCOMPARE(state(), before);
            QVERIFY(isTidy());
        }
    }
    // The next one removes what has stayed.
    QCOMPARE(install(), 0);
    QVERIFY(isTidy());
    QVERIFY(!QFileInfo::exists(file("old.txt")));
}

void InstallerTest::failedFirstInstallationLeavesNothing()
{
    QVERIFY(QDir().mkpath(shortcut()));
    QCOMPARE(install(), int(NotWritten));
    QVERIFY(QDir().rmdir(shortcut()));
    QVERIFY(folder().isEmpty());
    QVERIFY(uninstallValue("DisplayName").isNull());
    const QDir programs(localData() + QStringLiteral("/Programs"));
    QCOMPARE(programs.entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

/// That account has its folders below the system's own.
void InstallerTest::systemAccountIsRefused()
{
    QSettings folders(
        QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion"
                       "\\Explorer\\User Shell Folders"),
        QSettings::NativeFormat);
    const QVariant before = folders.value(QStringLiteral("Local AppData"));
    const auto restore = qScopeGuard([&folders, before] {
        if (before.isNull())
            folders.remove(QStringLiteral("Local AppData"));
        else
            folders.setValue(QStringLiteral("Local AppData"), before);
    });
    const QString place =
        QStringLiteral("C:\\windows\\system32\\config\\systemprofile\\AppData\\Local");
    QVERIFY(QDir().mkpath(place));
    folders.setValue(QStringLiteral("Local AppData"), place);
    folders.sync();
    QCOMPARE(install(), int(IsSystem));
    QCOMPARE(run(QStringLiteral(MARVIK_SETUP), QStringLiteral("/S /ALLUSERS")), int(IsSystem));
    QVERIFY(folder().isEmpty());
    QVERIFY(!QFileInfo::exists(place + QStringLiteral("\\Programs")));
    QVERIFY(!QFileInfo::exists(QStringLiteral("C:/Program Files/MarvikTools")));
}

void InstallerTest::uninstallingKeepsTheSettings()
{
    QCOMPARE(install(), 0);
    storeData();
    uninstall();
    QTRY_COMPARE_WITH_TIMEOUT(storedData(), QStringList{QStringLiteral("/cache/device.ini")},
                              kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs); // its last step
}

void InstallerTest::uninstallingRemovesTheSettingsOnRequest()
{
    QCOMPARE(install(), 0);
    storeData();
    const QString settings = QSettings(QSettings::IniFormat, QSettings::UserScope,
                                       QStringLiteral("MarvikTools"), QStringLiteral("MarvikTools"))
                                 .fileName();
    QVERIFY(QDir().mkpath(QFileInfo(settings).path()));
    QVERIFY(writeFile(settings));
    uninstall(QStringLiteral("/SETTINGS"));
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(dataFolder()), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(settings), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(folder().isEmpty(), kTimeoutMs); // its last step
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

void InstallerTest::uninstallingCanBeTriedAgain()
{
    QCOMPARE(install(), 0);
    {
        const HeldFile opened(file("config.json"));
        QVERIFY(opened.isHeld());
        QCOMPARE(uninstallInPlace(), int(NotWritten));
    }
    QVERIFY(isThere(shortcut()));
    QVERIFY(QFileInfo::exists(file("config.json")));
    const QString place = folder();
    QVERIFY(!place.isEmpty());
    QCOMPARE(uninstallInPlace(), 0);
    QVERIFY(folder().isEmpty());
    QVERIFY(!isThere(shortcut()));
    QCOMPARE(fileNames(place), QStringList{QStringLiteral("/Uninstall.exe")});
    QVERIFY(QDir(place).removeRecursively());
}

/// signature-test verifies those of the packages.
void InstallerTest::uninstallerIsSignedLikeItsInstaller()
{
    QCOMPARE(installOld(), 0);
    QVERIFY(isSigned(file("Uninstall.exe")));
    QVERIFY(isSigned(file("MarvikTools.exe")));
    QCOMPARE(install(), 0);
    QCOMPARE(isSigned(file("Uninstall.exe")), isSigned(QStringLiteral(MARVIK_SETUP)));
}

QTEST_GUILESS_MAIN(InstallerTest)
#include "InstallerTest.moc"
