#include "Installation.h"
#include "ProgramMutexNames.h"
#include "Wine.h"

#include <QtTest>

using namespace Installation;

namespace {

/// What Windows Installer ends with when a package refuses.
constexpr int kFailed = 1603;

const QString kComputer = QStringLiteral("HKEY_LOCAL_MACHINE");
const QString kPrograms = QStringLiteral("C:/Program Files/MarvikTools");

/// In the menu of all users; Wine's Windows Installer knows only the user's.
QString startMenu()
{
    const QString common = QStringLiteral("C:/ProgramData/Microsoft/Windows/Start Menu/Programs");
    return (isWine() ? QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation)
                     : common) +
           QStringLiteral("/MarvikTools.lnk");
}

/// Runs msiexec without questions, as a management tool does.
int msiexec(const QString& action, const QString& package = QStringLiteral(MARVIK_MSI))
{
    return run(QStringLiteral("C:/windows/system32/msiexec.exe"),
               action + QLatin1Char(' ') + QDir::toNativeSeparators(package) +
                   QStringLiteral(" /qn"));
}

int installOld()
{
    return msiexec(QStringLiteral("/i"), QStringLiteral(MARVIK_OLD_MSI));
}

/// The versions in the list of programs.
QStringList versions()
{
    QSettings list(QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\"
                                  "CurrentVersion\\Uninstall"),
                   QSettings::NativeFormat);
    QStringList found;
    for (const QString& key : list.childGroups()) {
        if (entry(kComputer, QStringLiteral("DisplayName"), key) == QStringLiteral("MarvikTools"))
            found += entry(kComputer, QStringLiteral("DisplayVersion"), key).toString();
    }
    return found;
}

} // namespace

/// The package of Windows Installer, in a separate Wine prefix.
class MsiTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void installsForAllUsers();
    void installedProgramStarts();
    void upgradeReplacesTheOldVersion();
    void packageOfTheSameVersionTakesItsPlace();
    void olderVersionIsRefused();
    void programAtWorkIsLeftAlone();
    void removalLeavesNothing();
    void installationOfTheSetupProgramIsRefused();
};

void MsiTest::cleanup()
{
    for (const QString& package : {QStringLiteral(MARVIK_MSI), QStringLiteral(MARVIK_OLD_MSI),
                                   QStringLiteral(MARVIK_MSI_AGAIN)})
        msiexec(QStringLiteral("/x"), package);
    QCOMPARE(versions(), QStringList());
    QVERIFY(!isThere(kPrograms));
}

void MsiTest::installsForAllUsers()
{
    QCOMPARE(msiexec(QStringLiteral("/i")), 0);
    QCOMPARE(versions(), QStringList{QStringLiteral(MARVIK_VERSION)});
    QCOMPARE(contents(kPrograms), contents(QStringLiteral(MARVIK_STAGE)));
    QVERIFY(isThere(startMenu()));
}

void MsiTest::installedProgramStarts()
{
    QCOMPARE(msiexec(QStringLiteral("/i")), 0);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), QStringLiteral("C:\\windows\\system32;C:\\windows"));
    environment.remove(QStringLiteral("WINEPATH"));
    program.setProcessEnvironment(environment);
    program.start(kPrograms + QStringLiteral("/MarvikTools.exe"), {});
    QTRY_VERIFY_WITH_TIMEOUT(::FindWindowA("velmarin", nullptr), kTimeoutMs);
    // Removed while it runs: it is asked to end.
    QCOMPARE(msiexec(QStringLiteral("/x")), 0);
    QVERIFY(program.waitForFinished(kTimeoutMs));
    QCOMPARE(program.exitCode(), 0);
}

void MsiTest::upgradeReplacesTheOldVersion()
{
    QCOMPARE(installOld(), 0);
    QCOMPARE(versions(), QStringList{QStringLiteral("0.9.0")});
    QVERIFY(isThere(kPrograms + QStringLiteral("/old.txt")));
    QCOMPARE(msiexec(QStringLiteral("/i")), 0);
    QCOMPARE(versions(), QStringList{QStringLiteral(MARVIK_VERSION)});
    QCOMPARE(contents(kPrograms), contents(QStringLiteral(MARVIK_STAGE)));
    QVERIFY(isThere(startMenu()));
}

void MsiTest::packageOfTheSameVersionTakesItsPlace()
{
    QCOMPARE(msiexec(QStringLiteral("/i")), 0);
    QCOMPARE(msiexec(QStringLiteral("/i"), QStringLiteral(MARVIK_MSI_AGAIN)), 0);
    QCOMPARE(versions(), QStringList{QStringLiteral(MARVIK_VERSION)});
    QVERIFY(isThere(kPrograms + QStringLiteral("/old.txt")));
    QVERIFY(!isThere(kPrograms + QStringLiteral("/Qt5Core.dll")));
}

void MsiTest::olderVersionIsRefused()
{
    QCOMPARE(msiexec(QStringLiteral("/i")), 0);
    QCOMPARE(installOld(), kFailed);
    QCOMPARE(versions(), QStringList{QStringLiteral(MARVIK_VERSION)});
    QCOMPARE(contents(kPrograms), contents(QStringLiteral(MARVIK_STAGE)));
}

void MsiTest::programAtWorkIsLeftAlone()
{
    {
        const HeldMutex program(ProgramMutexNames::kComputer);
        QVERIFY(program.isHeld());
        QCOMPARE(msiexec(QStringLiteral("/i")), kFailed);
        QVERIFY(!isThere(kPrograms));
        QCOMPARE(versions(), QStringList());
    }
    QCOMPARE(installOld(), 0);
    const QMap<QString, QByteArray> before = contents(kPrograms);
    {
        const HeldMutex program(ProgramMutexNames::kComputer);
        QCOMPARE(msiexec(QStringLiteral("/i")), kFailed);
        QCOMPARE(contents(kPrograms), before);
        QCOMPARE(msiexec(QStringLiteral("/x"), QStringLiteral(MARVIK_OLD_MSI)), kFailed);
        QCOMPARE(contents(kPrograms), before);
        QCOMPARE(versions(), QStringList{QStringLiteral("0.9.0")});
    }
}

void MsiTest::removalLeavesNothing()
{
    QCOMPARE(msiexec(QStringLiteral("/i")), 0);
    QCOMPARE(msiexec(QStringLiteral("/x")), 0);
    QCOMPARE(versions(), QStringList());
    QVERIFY(!isThere(kPrograms));
    QVERIFY(!isThere(startMenu()));
    QVERIFY(QSettings(QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\MarvikTools"),
                      QSettings::NativeFormat)
                .value(QStringLiteral("Package"))
                .isNull());
}

/// Both would write the same folder.
void MsiTest::installationOfTheSetupProgramIsRefused()
{
    QCOMPARE(run(QStringLiteral(MARVIK_OLD_SETUP), QStringLiteral("/S /ALLUSERS")), 0);
    const QMap<QString, QByteArray> before = contents(kPrograms);
    QCOMPARE(msiexec(QStringLiteral("/i")), kFailed);
    QCOMPARE(contents(kPrograms), before);
    QCOMPARE(run(kPrograms + QStringLiteral("/Uninstall.exe"),
                 QStringLiteral("/S _?=C:\\Program Files\\MarvikTools")),
             0);
    QVERIFY(QDir(kPrograms).removeRecursively());
}

QTEST_GUILESS_MAIN(MsiTest)
#include "MsiTest.moc"
