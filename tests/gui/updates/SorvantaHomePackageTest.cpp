#include "CacheDirectory.h"
#include "LoadingDialog.h"
#include "LocalService.h"
#include "LogCapture.h"
#include "ShownHome.h"
#include "SvtaVersionUpdateDialog.h"
#include "TestInstaller.h"

#include <memory>
#include <QFile>
#include <QtTest>

using Pages = SvtaPagesView;
using Dialog = SvtaVersionUpdateDialog;

/// A downloaded package: the current page decides what is done with it.
class SorvantaHomePackageTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nothingIsInstalledFromThePage_data();
    void nothingIsInstalledFromThePage();
    void packageIsNeverUsedAsTheOtherKind();
    void stoppedDownloadInstallsNothing();
    void installerIsStartedAndTheProgramEnds_data();
    void installerIsStartedAndTheProgramEnds();
    void installerThatDoesNotStartLeavesTheProgram();
    void forcedInstallerThatDoesNotStartEndsTheProgram();

private:
    [[nodiscard]] Dialog* dialog() const { return m_home->find<Dialog>(); }
    [[nodiscard]] bool installerWasStarted() const
    {
        return m_log->contains(QStringLiteral("ret = true")) ||
               m_log->contains(QStringLiteral("ret = false"));
    }
    /// Downloads a package while the shown page installs nothing.
    void download(const QByteArray& content, const QString& name = TestInstaller::name());
    /// Runs the event loop from the end of the download on.
    [[nodiscard]] bool endsTheProgram();

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<CacheDirectory> m_cache;
    std::unique_ptr<LocalService> m_service;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomePackageTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_cache = std::make_unique<CacheDirectory>();
    m_service = std::make_unique<LocalService>();
    QVERIFY(m_service->isRunning());
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    QVERIFY(m_home->openSettings());
}

void SorvantaHomePackageTest::cleanup()
{
    m_home.reset();
    m_service.reset();
    m_cache.reset();
    m_log.reset();
}

void SorvantaHomePackageTest::download(const QByteArray& content, const QString& name)
{
    m_home->window().showView(Pages::AboutUsPage);
    m_home->window().slotSetUpdateData(m_service->offer(name, content));
    m_home->window().showView(Pages::SettingPage);
    QSignalSpy success(dialog(), &Dialog::sigDownloadSuccessed);
    dialog()->slotUpdate();
    QTRY_COMPARE(success.size(), 1);
    QTRY_VERIFY(!dialog()->isVisible());
    QCOMPARE(m_cache->contentOf(name), content);
}

bool SorvantaHomePackageTest::endsTheProgram()
{
    constexpr int kStays = 7;
    QTimer::singleShot(0, &m_home->window(), &SorvantaHome::slotDownloadSuccessed);
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, qApp, [] { QCoreApplication::exit(kStays); });
    limit.start(1000);
    return QCoreApplication::exec() != kStays;
}

void SorvantaHomePackageTest::nothingIsInstalledFromThePage_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("settings") << int(Pages::SettingPage);
    QTest::newRow("start") << int(Pages::StartPage);
}

void SorvantaHomePackageTest::nothingIsInstalledFromThePage()
{
    QFETCH(const int, page);
    download(TestInstaller::content());
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(page));
    m_log->clear();
    QVERIFY(!endsTheProgram());
    QVERIFY(m_log->contains(QStringLiteral("isStopDownload = false")));
    QVERIFY(!installerWasStarted());
    QVERIFY(m_log->texts().filter(QStringLiteral("slotCameraUpdateFile")).isEmpty());
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    // The file stays where it is.
    QCOMPARE(m_cache->files(), QStringList(TestInstaller::name()));
}

void SorvantaHomePackageTest::packageIsNeverUsedAsTheOtherKind()
{
    download(TestInstaller::content());
    m_home->window().showView(Pages::InfoPage);
    m_home->cameras().hidapi().forgetCalls();
    const QFile::Permissions permissions = QFile::permissions(dialog()->savePath());
    QVERIFY(!endsTheProgram());
    QCOMPARE(QFile::permissions(dialog()->savePath()), permissions);
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QCOMPARE(m_home->cameras().hidapi().calls(), QStringList());

    m_home->window().slotSetDownloadData(
        m_service->offer(TestInstaller::name(), TestInstaller::content()), {});
    m_home->window().showView(Pages::SettingPage);
    QSignalSpy success(dialog(), &Dialog::sigDownloadSuccessed);
    dialog()->slotUpdate();
    QTRY_COMPARE(success.size(), 1);
    QTRY_VERIFY(!dialog()->isVisible());
    for (const auto page : {Pages::HomePage, Pages::AboutUsPage}) {
        m_home->window().showView(page);
        QVERIFY(!endsTheProgram());
    }
    QVERIFY(!installerWasStarted());
}

void SorvantaHomePackageTest::stoppedDownloadInstallsNothing()
{
    download(TestInstaller::content());
    m_home->window().showView(Pages::HomePage);
    dialog()->slotStopUpdate();
    m_log->clear();
    QVERIFY(!endsTheProgram());
    QVERIFY(m_log->contains(QStringLiteral("isStopDownload = true")));
    QVERIFY(!installerWasStarted());
}

void SorvantaHomePackageTest::installerIsStartedAndTheProgramEnds_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("list") << int(Pages::HomePage);
    QTest::newRow("about") << int(Pages::AboutUsPage);
}

void SorvantaHomePackageTest::installerIsStartedAndTheProgramEnds()
{
    QFETCH(const int, page);
    download(TestInstaller::content());
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(page));
    m_log->clear();
    QVERIFY(endsTheProgram());
    QTRY_COMPARE(m_cache->contentOf(TestInstaller::name() + QStringLiteral(".started")),
                 TestInstaller::startedWithoutArguments());
    QVERIFY(m_log->contains(QStringLiteral("ret = true")));
    QVERIFY(m_log->contains(QStringLiteral("downLoadFilepath = \"%1\"").arg(dialog()->savePath())));
    QVERIFY(m_log->contains(
        QStringLiteral("downLoadFilepath = \"\\\"%1\\\"\"").arg(dialog()->savePath())));
}

void SorvantaHomePackageTest::installerThatDoesNotStartLeavesTheProgram()
{
    download("no program", QStringLiteral("setup 1.exe"));
    m_home->window().showView(Pages::HomePage);
    QVERIFY(!endsTheProgram());
    QVERIFY(m_log->contains(QStringLiteral("ret = false")));
    QVERIFY(m_home->window().isVisible());
}

void SorvantaHomePackageTest::forcedInstallerThatDoesNotStartEndsTheProgram()
{
    download("no program", QStringLiteral("setup 1.exe"));
    m_home->window().showView(Pages::HomePage);
    m_home->window().slotForceUpdate({});
    dialog()->hide();
    QVERIFY(endsTheProgram());
    QVERIFY(m_log->contains(QStringLiteral("ret = false")));
    QVERIFY(m_log->contains(QStringLiteral("forceStatus = true")));
}

QTEST_MAIN(SorvantaHomePackageTest)
#include "SorvantaHomePackageTest.moc"
