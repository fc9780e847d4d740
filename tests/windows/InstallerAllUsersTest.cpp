#include "Installation.h"
#include "LimitedProcess.h"
#include "ProgramMutexNames.h"

#include <QtTest>

using namespace Installation;

namespace {

constexpr int kAtWork = 10;
constexpr int kNotElevated = 12;
constexpr int kOtherPackage = 14;

const QString kComputer = QStringLiteral("HKEY_LOCAL_MACHINE");
const QString kUser = QStringLiteral("HKEY_CURRENT_USER");
const QString kPrograms = QStringLiteral("C:/Program Files/MarvikTools");
const QString kStartMenu =
    QStringLiteral("C:/ProgramData/Microsoft/Windows/Start Menu/Programs/MarvikTools.lnk");

int install(const QString& more = QStringLiteral("/ALLUSERS"))
{
    return run(QStringLiteral(MARVIK_SETUP), QStringLiteral("/S ") + more);
}

/// Runs the uninstaller of this entry where it lies, so that it returns a status.
int uninstallInPlace(const QString& root)
{
    const QString folder = entry(root, QStringLiteral("InstallLocation")).toString();
    return run(folder + QStringLiteral("/Uninstall.exe"), QStringLiteral("/S _?=") + folder);
}

bool isInstalled(const QString& root)
{
    return !entry(root, QStringLiteral("InstallLocation")).isNull();
}

} // namespace

/// The installation for all users of a computer.
class InstallerAllUsersTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void installsForAllUsers();
    void upgradesAnOlderVersion();
    void standsBesideTheInstallationOfAUser();
    void programOfAnotherUserIsLeftAlone();
    void needsAnElevatedProcess();
    void givesWayToThePackageOfWindowsInstaller();
};

void InstallerAllUsersTest::cleanup()
{
    for (const QString& root : {kComputer, kUser}) {
        const QString folder = entry(root, QStringLiteral("InstallLocation")).toString();
        if (folder.isEmpty())
            continue;
        QCOMPARE(uninstallInPlace(root), 0);
        QVERIFY(QDir(folder).removeRecursively());
    }
}

void InstallerAllUsersTest::installsForAllUsers()
{
    QCOMPARE(install(), 0);
    QCOMPARE(QDir::cleanPath(QDir::fromNativeSeparators(
                 entry(kComputer, QStringLiteral("InstallLocation")).toString())),
             kPrograms);
    QCOMPARE(entry(kComputer, QStringLiteral("DisplayVersion")).toString(),
             QString(MARVIK_VERSION));
    QVERIFY(isThere(kPrograms + QStringLiteral("/MarvikTools.exe")));
    QVERIFY(isThere(kStartMenu));
    QVERIFY(!isInstalled(kUser));

    // The log of the user who removes it goes, too.
    QVERIFY(QDir().mkpath(localData() + QStringLiteral("/MarvikTools")));
    const QString log = localData() + QStringLiteral("/MarvikTools/MarvikTools.log");
    QVERIFY(writeFile(log));
    const QString command = entry(kComputer, QStringLiteral("QuietUninstallString")).toString();
    QCOMPARE(run(command.section(QLatin1Char('"'), 1, 1), QStringLiteral("/S")), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!isInstalled(kComputer), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!isThere(kPrograms), kTimeoutMs);
    QVERIFY(!isThere(kStartMenu));
    QVERIFY(!isThere(log));
}

void InstallerAllUsersTest::upgradesAnOlderVersion()
{
    QCOMPARE(run(QStringLiteral(MARVIK_OLD_SETUP), QStringLiteral("/S /ALLUSERS")), 0);
    QVERIFY(isThere(kPrograms + QStringLiteral("/old.txt")));
    QCOMPARE(install(), 0);
    QVERIFY(!isThere(kPrograms + QStringLiteral("/old.txt")));
    QVERIFY(isThere(kPrograms + QStringLiteral("/Qt5Core.dll")));
    QVERIFY(isThere(kStartMenu));
    QCOMPARE(entry(kComputer, QStringLiteral("DisplayVersion")).toString(),
             QString(MARVIK_VERSION));
}

void InstallerAllUsersTest::standsBesideTheInstallationOfAUser()
{
    QCOMPARE(install({}), 0);
    QCOMPARE(install(), 0);
    QVERIFY(isInstalled(kUser));
    QVERIFY(isInstalled(kComputer));
    const QString own = entry(kUser, QStringLiteral("InstallLocation")).toString();
    QVERIFY(isThere(own + QStringLiteral("/MarvikTools.exe")));
    QCOMPARE(uninstallInPlace(kComputer), 0);
    QVERIFY(!isInstalled(kComputer));
    QVERIFY(!isThere(kPrograms + QStringLiteral("/MarvikTools.exe")));
    QVERIFY(isInstalled(kUser));
    QVERIFY(isThere(own + QStringLiteral("/MarvikTools.exe")));
}

void InstallerAllUsersTest::programOfAnotherUserIsLeftAlone()
{
    QCOMPARE(install(), 0);
    const QMap<QString, QByteArray> before = contents(kPrograms);
    const HeldMutex program(ProgramMutexNames::kComputer);
    QVERIFY(program.isHeld());
    QCOMPARE(install(), kAtWork);
    QCOMPARE(uninstallInPlace(kComputer), kAtWork);
    QCOMPARE(contents(kPrograms), before);
    QVERIFY(isInstalled(kComputer));
    // A user's own installation does not concern the programs of others.
    QCOMPARE(install({}), 0);
}

void InstallerAllUsersTest::needsAnElevatedProcess()
{
    QCOMPARE(LimitedProcess::run(QStringLiteral(MARVIK_SETUP) + QStringLiteral(" /S /ALLUSERS")),
             kNotElevated);
    QVERIFY(!isThere(kPrograms));
    QCOMPARE(install(), 0);
    QCOMPARE(LimitedProcess::run(
                 QLatin1Char('"') + kPrograms +
                 QStringLiteral("/Uninstall.exe\" /S _?=C:\\Program Files\\MarvikTools")),
             kNotElevated);
    QVERIFY(isInstalled(kComputer));
    QVERIFY(isThere(kPrograms + QStringLiteral("/MarvikTools.exe")));
    // A user's own installation needs no rights.
    QCOMPARE(LimitedProcess::run(QStringLiteral(MARVIK_SETUP) + QStringLiteral(" /S")), 0);
    QVERIFY(isInstalled(kUser));
}

void InstallerAllUsersTest::givesWayToThePackageOfWindowsInstaller()
{
    QSettings package(QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\MarvikTools"),
                      QSettings::NativeFormat);
    package.setValue(QStringLiteral("Package"), QStringLiteral("1.0.0"));
    package.sync();
    const int status = install();
    package.remove(QStringLiteral("Package"));
    package.sync();
    QCOMPARE(status, kOtherPackage);
    QVERIFY(!isThere(kPrograms));
}

QTEST_GUILESS_MAIN(InstallerAllUsersTest)
#include "InstallerAllUsersTest.moc"
