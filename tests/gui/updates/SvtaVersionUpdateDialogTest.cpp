#include "SvtaVersionUpdateDialog.h"
#include "CacheDirectory.h"
#include "LocalService.h"
#include "LogCapture.h"
#include "PackageFileName.h"

#include <memory>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using Dialog = SvtaVersionUpdateDialog;

namespace {

/// Long enough to see every stage of a download.
QByteArray longPackage()
{
    QByteArray content;
    for (int i = 0; i < 60000; ++i)
        content += static_cast<char>(i * 7 + i / 251);
    return content;
}

} // namespace

/// The offer of an update, and the download of its package.
class SvtaVersionUpdateDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsHiddenOnTheOffer();
    void showsAnOffer();
    void forcedOfferLeavesOnlyUpdateAndClose();
    void textsOfTheServiceAreShownUnchanged();
    void longDetailsAreCut_data();
    void longDetailsAreCut();
    void statusHasItsText();
    void progressIsShownInTheUnitOfThePackage();

    void downloadsIntoTheCacheDirectory();
    void startsFromAnEmptyFile();
    void addressWithoutAFileNameKeepsThePath();
    void signedAddressIsDownloaded();
    void refusesNamesThatAreNotPlain_data();
    void refusesNamesThatAreNotPlain();
    void emptyOfferCannotBeDownloaded();
    void failureIsReportedOnce_data();
    void failureIsReportedOnce();
    void secondPressAfterAFailureDownloadsAgain();
    void downloadsAgain();
    void stoppedDownloadStaysStopped();
    void cancelOnTheOfferHidesTheDialogAndTheDownloadContinues();
    void closingByTheWindowManagerCancels();
    void canBeDestroyedDuringADownload();

private:
    [[nodiscard]] QPushButton* button(const char* name) const
    {
        return m_dialog->findChild<QPushButton*>(QLatin1String(name));
    }
    void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    [[nodiscard]] QString text(const char* label) const
    {
        return m_dialog->findChild<QLabel*>(QLatin1String(label))->text();
    }
    [[nodiscard]] int bar() const
    {
        return m_dialog->findChild<QProgressBar*>(QStringLiteral("progressBar"))->value();
    }
    void show(const QJsonObject& offer) const
    {
        m_dialog->setUpdateData(offer, QStringLiteral("NOVA EDGE"), QStringLiteral("N"));
    }

    std::unique_ptr<CacheDirectory> m_cache;
    std::unique_ptr<LocalService> m_service;
    std::unique_ptr<Dialog> m_dialog;
    std::unique_ptr<QSignalSpy> m_success;
    std::unique_ptr<QSignalSpy> m_failure;
    std::unique_ptr<QSignalSpy> m_progress;
};

void SvtaVersionUpdateDialogTest::init()
{
    m_cache = std::make_unique<CacheDirectory>();
    m_service = std::make_unique<LocalService>();
    QVERIFY(m_service->isRunning());
    m_dialog = std::make_unique<Dialog>();
    m_success = std::make_unique<QSignalSpy>(m_dialog.get(), &Dialog::sigDownloadSuccessed);
    m_failure = std::make_unique<QSignalSpy>(m_dialog.get(), &Dialog::sigDownloadFailed);
    m_progress = std::make_unique<QSignalSpy>(m_dialog.get(), &Dialog::sigSetProgress);
}

void SvtaVersionUpdateDialogTest::cleanup()
{
    m_dialog.reset();
    m_service.reset();
    m_cache.reset();
}

void SvtaVersionUpdateDialogTest::startsHiddenOnTheOffer()
{
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->currentPage(), int(Dialog::OfferPage));
    QVERIFY(button("btnClose")->isHidden());
    QCOMPARE(text("labTitle"), QStringLiteral("MarvikTools V1.0.0(1e3b2q)"));
    QCOMPARE(text("label_4"),
             QStringLiteral("Installation package downloading… Do not power the device off or shut "
                            "it down. The software will be installed automatically after "
                            "downloaded."));
    QCOMPARE(text("labDownloadStatus"), QStringLiteral("Downloading…"));
    QCOMPARE(text("labTotalSize"), QStringLiteral("0/0MB"));
    QCOMPARE(text("labContent"), QString());
    QCOMPARE(button("btnCancelUpdate")->text(), QStringLiteral("Cancel"));
    QCOMPARE(button("btnPauseUpdate")->text(), QStringLiteral("Cancel"));
    QCOMPARE(button("btnUpdate")->text(), QStringLiteral("Update"));
    QCOMPARE(bar(), 0);
}

void SvtaVersionUpdateDialogTest::showsAnOffer()
{
    const int y = button("btnUpdate")->y();
    m_dialog->setCloseVisible(true);
    show(m_service->offer(QStringLiteral("fw.bin"), "x"));
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(text("labTitle"), QStringLiteral("NOVA EDGE"));
    QCOMPARE(text("labContent"), QStringLiteral("Sharper picture"));
    QVERIFY(button("btnPauseUpdate")->isVisible());
    QVERIFY(!button("btnCancelUpdate")->isHidden());
    QVERIFY(button("btnClose")->isHidden());
    QCOMPARE(button("btnUpdate")->pos(), QPoint(151, y));
}

void SvtaVersionUpdateDialogTest::forcedOfferLeavesOnlyUpdateAndClose()
{
    const int y = button("btnUpdate")->y();
    const QSignalSpy close(m_dialog.get(), &Dialog::sigShowCloseAppDialog);
    m_dialog->setCloseVisible(true);
    m_dialog->setUpdateData({}, QStringLiteral("MarvikTools V1.0.0"), QStringLiteral("Y"));
    QList<QString> visible;
    for (const QPushButton* each : m_dialog->findChildren<QPushButton*>()) {
        if (each->isVisible())
            visible.append(each->objectName());
    }
    visible.sort();
    QCOMPARE(visible, (QList<QString>{QStringLiteral("btnClose"), QStringLiteral("btnUpdate")}));
    QVERIFY(button("btnCancelUpdate")->isHidden());
    QCOMPARE(button("btnUpdate")->pos(), QPoint(100, y));
    click("btnClose");
    QCOMPARE(close.size(), 1);
    QVERIFY(m_dialog->isVisible());
}

void SvtaVersionUpdateDialogTest::textsOfTheServiceAreShownUnchanged()
{
    m_dialog->setUpdateData({{QStringLiteral("details"), QStringLiteral("<h1>big</h1>")}},
                            QStringLiteral("<b>bold</b>"), QStringLiteral("N"));
    for (const QLabel* label : m_dialog->findChildren<QLabel*>()) {
        if (!label->text().isEmpty())
            QCOMPARE(label->textFormat(), Qt::PlainText);
    }
    QCOMPARE(text("labContent"), QStringLiteral("<h1>big</h1>"));
    QCOMPARE(text("labTitle"), QStringLiteral("<b>bold</b>"));
}

void SvtaVersionUpdateDialogTest::longDetailsAreCut_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("shown");
    QTest::newRow("at the limit") << QStringLiteral("n") << 65536 << 65536;
    QTest::newRow("one more") << QStringLiteral("n") << 65537 << 65536;
    QTest::newRow("a megabyte") << QStringLiteral("n") << (1 << 20) << 65536;
    QTest::newRow("three bytes each") << QStringLiteral("固") << 30000 << 21845;
    QTest::newRow("a pair each") << QStringLiteral("😀") << 30000 << 16384;
}

void SvtaVersionUpdateDialogTest::longDetailsAreCut()
{
    QFETCH(const QString, character);
    QFETCH(const int, given);
    QFETCH(const int, shown);
    show({{QStringLiteral("details"), character.repeated(given)}});
    QVERIFY(text("labContent") == character.repeated(shown));
}

void SvtaVersionUpdateDialogTest::statusHasItsText()
{
    m_dialog->setStatus(0);
    QCOMPARE(text("labDownloadStatus"), QStringLiteral("Download success"));
    m_dialog->setStatus(1);
    QCOMPARE(text("labDownloadStatus"), QStringLiteral("Downloading"));
    m_dialog->setStatus(2);
    QCOMPARE(text("labDownloadStatus"), QStringLiteral("Download failed"));
    m_dialog->setStatus(3);
    QCOMPARE(text("labDownloadStatus"), QString());
}

void SvtaVersionUpdateDialogTest::progressIsShownInTheUnitOfThePackage()
{
    const auto shown = [this](const char* size, int percent) {
        show({{QStringLiteral("packageSize"), QString::fromLatin1(size)}});
        m_dialog->setProgress(percent);
        return text("labTotalSize");
    };
    QCOMPARE(shown("52.4MB", 37), QStringLiteral("19.4/52.4MB"));
    QCOMPARE(bar(), 37);
    QCOMPARE(text("labDownloadStatus"), QStringLiteral("Downloading…"));
    QCOMPARE(shown("1.5MB", 100), QStringLiteral("1.5/1.5MB"));
    QCOMPARE(shown("unknown", 50), QStringLiteral("0.0/0.0wn"));
    QCOMPARE(shown("", 50), QStringLiteral("0.0/0.0"));
}

void SvtaVersionUpdateDialogTest::downloadsIntoTheCacheDirectory()
{
    const LogCapture log;
    const QByteArray package = longPackage();
    show(m_service->offer(QStringLiteral("fw 1.bin"), package));
    QVERIFY(!QFileInfo::exists(m_cache->path()));
    click("btnUpdate");
    QCOMPARE(m_dialog->currentPage(), int(Dialog::DownloadPage));
    QTRY_COMPARE(m_success->size(), 1);
    QVERIFY(m_failure->isEmpty());
    QCOMPARE(m_dialog->savePath(), m_cache->filePath(QStringLiteral("fw 1.bin")));
    QCOMPARE(m_cache->contentOf(QStringLiteral("fw 1.bin")), package);
    QCOMPARE(m_cache->files(), QStringList(QStringLiteral("fw 1.bin")));
    QCOMPARE(m_progress->constLast().at(0).toInt(), 100);
    QVERIFY(!m_dialog->isStopDownload());
    QCOMPARE(log.texts().filter(QStringLiteral("系统缓存目录路径:")).size(), 1);
}

void SvtaVersionUpdateDialogTest::startsFromAnEmptyFile()
{
    QVERIFY(m_cache->put(QStringLiteral("fw.bin"), "old"));
    show(m_service->offer(QStringLiteral("fw.bin"), "new"));
    (*m_service)->stop();
    click("btnUpdate");
    QTRY_COMPARE(m_failure->size(), 1);
    QCOMPARE(m_cache->files(), QStringList());
}

void SvtaVersionUpdateDialogTest::addressWithoutAFileNameKeepsThePath()
{
    show(m_service->offer(QStringLiteral("fw.bin"), "new"));
    click("btnUpdate");
    QTRY_COMPARE(m_success->size(), 1);
    const QString path = m_dialog->savePath();
    show({{QStringLiteral("downLoadUrl"), (*m_service)->address(QStringLiteral("/packages/"))}});
    m_dialog->slotUpdate();
    QCOMPARE(m_dialog->savePath(), path);
    QTRY_COMPARE(m_failure->size(), 1);
}

void SvtaVersionUpdateDialogTest::signedAddressIsDownloaded()
{
    const QByteArray package = longPackage();
    QJsonObject offer = m_service->offer(QStringLiteral("fw.bin"), package);
    const QString query = QStringLiteral("?sig=a%2Fb&expires=10:00");
    offer[QStringLiteral("downLoadUrl")] =
        offer.value(QStringLiteral("downLoadUrl")).toString() + query;
    show(offer);
    click("btnUpdate");
    QTRY_COMPARE(m_success->size(), 1);
    QVERIFY(m_failure->isEmpty());
    QCOMPARE(m_cache->files(),
             QStringList(PackageFileName::onDisk(QStringLiteral("fw.bin") + query)));
    QFile saved(m_dialog->savePath());
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), package);
}

void SvtaVersionUpdateDialogTest::refusesNamesThatAreNotPlain_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name :
         {"..", "..\\..\\evil.exe", "C:evil.exe", "CON", "nul.bin", "fw.bin.", "fw\n.bin"})
        QTest::newRow(name) << QString::fromLatin1(name);
    QTest::newRow("long") << QString(256, QLatin1Char('a'));
}

void SvtaVersionUpdateDialogTest::refusesNamesThatAreNotPlain()
{
    QFETCH(const QString, name);
    QVERIFY(m_cache->put(QStringLiteral("kept"), "kept"));
    const auto offerOf = [this](const QString& file) {
        return QJsonObject{{QStringLiteral("downLoadUrl"),
                            (*m_service)->address(QStringLiteral("/packages/")) + file}};
    };
    show(offerOf(name));
    click("btnUpdate");
    QCOMPARE(m_failure->size(), 1);
    m_dialog->reDownload();
    QCOMPARE(m_failure->size(), 2);
    QTest::qWait(50);
    QVERIFY((*m_service)->requests().isEmpty());
    QCOMPARE(m_cache->files(), QStringList(QStringLiteral("kept")));
    QCOMPARE(m_dialog->savePath(), QString());
}

void SvtaVersionUpdateDialogTest::emptyOfferCannotBeDownloaded()
{
    show({});
    click("btnUpdate");
    QTRY_COMPARE(m_failure->size(), 1);
    QVERIFY(m_success->isEmpty());
    QVERIFY(!QFileInfo::exists(m_cache->path()));
}

void SvtaVersionUpdateDialogTest::failureIsReportedOnce_data()
{
    QTest::addColumn<QString>("fault");
    QTest::newRow("service down") << QString();
    QTest::newRow("not found") << QStringLiteral("status 404");
    QTest::newRow("server error") << QStringLiteral("status 500");
    QTest::newRow("cut off") << QStringLiteral("truncate 30000");
    QTest::newRow("insecure redirect") << QStringLiteral("redirect http");
    QTest::newRow("self-signed") << QStringLiteral("certificate selfsigned");
}

void SvtaVersionUpdateDialogTest::failureIsReportedOnce()
{
    QFETCH(const QString, fault);
    show(m_service->offer(QStringLiteral("fw.bin"), longPackage()));
    if (fault.isEmpty())
        (*m_service)->stop();
    else
        QVERIFY((*m_service)->fault(fault));
    click("btnUpdate");
    QTRY_COMPARE_WITH_TIMEOUT(m_failure->size(), 1, 30000);
    QTest::qWait(50);
    QCOMPARE(m_failure->size(), 1);
    QVERIFY(m_success->isEmpty());
    QCOMPARE(m_dialog->currentPage(), int(Dialog::DownloadPage));
    QCOMPARE(m_cache->files(), QStringList());
}

void SvtaVersionUpdateDialogTest::secondPressAfterAFailureDownloadsAgain()
{
    const QByteArray package = longPackage();
    show(m_service->offer(QStringLiteral("fw.bin"), package));
    QVERIFY((*m_service)->fault(QStringLiteral("truncate 30000")));
    click("btnUpdate");
    QTRY_COMPARE(m_failure->size(), 1);
    QVERIFY(m_cache->put(QStringLiteral("fw.bin"), package.left(100)));
    (*m_service)->setBehaviour({});
    m_dialog->setCurrentPage(Dialog::OfferPage);
    click("btnUpdate");
    QVERIFY(!m_cache->files().contains(QStringLiteral("fw.bin")));
    QTRY_COMPARE(m_success->size(), 1);
    QCOMPARE(m_cache->contentOf(QStringLiteral("fw.bin")), package);
}

void SvtaVersionUpdateDialogTest::downloadsAgain()
{
    const QByteArray package = longPackage();
    show(m_service->offer(QStringLiteral("fw.bin"), package));
    QVERIFY((*m_service)->fault(QStringLiteral("truncate 30000")));
    click("btnUpdate");
    QTRY_COMPARE(m_failure->size(), 1);
    (*m_service)->setBehaviour({});
    QVERIFY(m_cache->put(QStringLiteral("fw.bin"), "partial"));
    m_dialog->setProgress(50);
    m_dialog->reDownload();
    QVERIFY(!m_cache->files().contains(QStringLiteral("fw.bin")));
    QCOMPARE(bar(), 0);
    QTRY_COMPARE(m_success->size(), 1);
    QCOMPARE(m_cache->contentOf(QStringLiteral("fw.bin")), package);
}

void SvtaVersionUpdateDialogTest::stoppedDownloadStaysStopped()
{
    show(m_service->offer(QStringLiteral("fw.bin"), longPackage()));
    QVERIFY((*m_service)->fault(QStringLiteral("slow 30000")));
    click("btnUpdate");
    QTRY_VERIFY(m_progress->size() > 2);
    m_dialog->setProgress(40);
    click("btnCancelUpdate");
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->currentPage(), int(Dialog::OfferPage));
    QVERIFY(m_dialog->isStopDownload());
    QCOMPARE(bar(), 0);
    // The end of the request reports no failure: the progress returns to zero.
    QTRY_COMPARE(m_progress->constLast().at(0).toInt(), 0);
    QTest::qWait(100);
    QVERIFY(m_failure->isEmpty());
    QVERIFY(m_success->isEmpty());
    QCOMPARE(m_cache->files(), QStringList());
    (*m_service)->setBehaviour({});
    m_dialog->slotUpdate();
    QVERIFY(!m_dialog->isStopDownload());
    QTRY_COMPARE(m_success->size(), 1);
}

void SvtaVersionUpdateDialogTest::cancelOnTheOfferHidesTheDialogAndTheDownloadContinues()
{
    show(m_service->offer(QStringLiteral("fw.bin"), longPackage()));
    QVERIFY((*m_service)->fault(QStringLiteral("slow 60000")));
    click("btnUpdate");
    QTRY_VERIFY(!m_progress->isEmpty());
    m_dialog->setCurrentPage(Dialog::OfferPage);
    click("btnPauseUpdate");
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!m_dialog->isStopDownload());
    const int before = m_progress->size();
    QTRY_COMPARE(m_success->size(), 1);
    QVERIFY(m_progress->size() > before);
}

void SvtaVersionUpdateDialogTest::closingByTheWindowManagerCancels()
{
    const QSignalSpy close(m_dialog.get(), &Dialog::sigShowCloseAppDialog);
    show(m_service->offer(QStringLiteral("fw.bin"), longPackage()));
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!m_dialog->isStopDownload());

    m_dialog->show();
    QVERIFY((*m_service)->fault(QStringLiteral("slow 30000")));
    click("btnUpdate");
    QTRY_VERIFY(!m_progress->isEmpty());
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(m_dialog->isStopDownload());

    m_dialog->setUpdateData({}, QStringLiteral("MarvikTools V1"), QStringLiteral("Y"));
    m_dialog->close();
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(close.size(), 1);
}

void SvtaVersionUpdateDialogTest::canBeDestroyedDuringADownload()
{
    show(m_service->offer(QStringLiteral("fw.bin"), longPackage()));
    QVERIFY((*m_service)->fault(QStringLiteral("slow 30000")));
    click("btnUpdate");
    QTRY_VERIFY(!m_progress->isEmpty());
    m_dialog.reset();
    QCOMPARE(m_cache->files(), QStringList());
}

QTEST_MAIN(SvtaVersionUpdateDialogTest)
#include "SvtaVersionUpdateDialogTest.moc"
