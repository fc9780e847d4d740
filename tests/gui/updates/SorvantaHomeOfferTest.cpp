#include "CacheDirectory.h"
#include "LoadingDialog.h"
#include "LocalService.h"
#include "LogCapture.h"
#include "MaskedDialog.h"
#include "PendingTimers.h"
#include "ShownHome.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "TestVendor.h"

#include <memory>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using Pages = SvtaPagesView;
using Dialog = SvtaVersionUpdateDialog;

/// Offers of updates, and downloads that fail.
class SorvantaHomeOfferTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firmwareOfferIsTitledWithTheProductsName();
    void normalOfferIsTitledWithTheProgramsName();
    void forcedOfferAllowsOnlyUpdateOrQuit();
    void quitQuestionOfAForcedOfferCanBeCancelled();
    void offerShowsAHiddenWindow();
    void failedDownloadAsks();
    void failedForcedDownloadHasOneButton();
    void laterTriesAgain();
    void retryGivesUp();
    void closingTheFailureMessageGivesUp();
    void failureMessageOfAForcedUpdateCannotBeClosed();
    void toastsOfThePagesAreShown();

    void applicationOfferWaitsForAPageOfTheProgram_data();
    void applicationOfferWaitsForAPageOfTheProgram();
    void firmwareOfferIsIgnoredDuringAnotherDownload();
    void answerIsDroppedWhenThePageIsLeft();

    void programChecksForItsUpdateWhenTheListIsShown();
    void programsOwnOfferIsShown();
    void otherAnswersAboutTheProgramShowNothing_data();
    void otherAnswersAboutTheProgramShowNothing();
    void programDoesNotCheckForItsUpdate_data();
    void programDoesNotCheckForItsUpdate();

private:
    [[nodiscard]] QString title() const
    {
        return m_home->find<Dialog>()->findChild<QLabel*>(QStringLiteral("labTitle"))->text();
    }
    template <typename Widget>
    [[nodiscard]] QPushButton* button(const char* name) const
    {
        return m_home->find<Widget>()->template findChild<QPushButton*>(QLatin1String(name));
    }
    [[nodiscard]] QString message() const
    {
        return m_home->find<SvtaMessageDialog>()
            ->findChild<QLabel*>(QStringLiteral("labMessage"))
            ->text();
    }
    [[nodiscard]] const QDialog* masked() const
    {
        return dialogOver(m_home->window().findChild<MaskForm*>({}, Qt::FindDirectChildrenOnly));
    }
    /// Shows the list, on which the program's own offers are shown.
    void showList()
    {
        PendingTimers::drop(ShownHome::kStartAnimationMs);
        m_home->window().showView(Pages::HomePage);
    }
    void startAgain()
    {
        m_home.reset();
        m_home = std::make_unique<ShownHome>();
        QVERIFY(m_home->isPlaced());
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<CacheDirectory> m_cache;
    std::unique_ptr<LocalService> m_service;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeOfferTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_cache = std::make_unique<CacheDirectory>();
    m_service = std::make_unique<LocalService>();
    QVERIFY(m_service->isRunning());
    startAgain();
}

void SorvantaHomeOfferTest::cleanup()
{
    m_home.reset();
    m_service.reset();
    m_cache.reset();
    m_log.reset();
}

void SorvantaHomeOfferTest::firmwareOfferIsTitledWithTheProductsName()
{
    m_service->answer("{\"needUpgrade\":true,\"details\":\"New\"}");
    PendingTimers::drop(ShownHome::kStartAnimationMs);
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    m_home->click("deviceInfoBtn");
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    m_home->click("btnUpgrade");
    QTRY_VERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(masked(), static_cast<const QDialog*>(m_home->find<Dialog>()));
    QCOMPARE(title(), QStringLiteral("NOVA EDGE"));
    QVERIFY(m_home->find<Dialog>()->isModal());
    QVERIFY(button<Dialog>("btnPauseUpdate")->isVisible());
    QVERIFY(m_log->contains(QStringLiteral("installWidget1")));
    QVERIFY(m_log->contains(QStringLiteral("installWidget2")));
    QVERIFY(m_log->contains(QStringLiteral("emit sigSetDownloadData")));
}

void SorvantaHomeOfferTest::normalOfferIsTitledWithTheProgramsName()
{
    showList();
    m_home->window().slotSetUpdateData(m_service->offer(QStringLiteral("setup"), "x"));
    QVERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(masked(), static_cast<const QDialog*>(m_home->find<Dialog>()));
    QCOMPARE(title(), QStringLiteral("MarvikTools V" MARVIK_VERSION));
    QVERIFY(button<Dialog>("btnClose")->isHidden());
    QVERIFY(button<Dialog>("btnPauseUpdate")->isVisible());
}

void SorvantaHomeOfferTest::forcedOfferAllowsOnlyUpdateOrQuit()
{
    showList();
    m_home->window().slotForceUpdate(m_service->offer(QStringLiteral("setup"), "x"));
    QVERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(title(), QStringLiteral("MarvikTools V" MARVIK_VERSION));
    QVERIFY(button<Dialog>("btnClose")->isVisible());
    QVERIFY(button<Dialog>("btnPauseUpdate")->isHidden());

    QTest::mouseClick(button<Dialog>("btnClose"), Qt::LeftButton);
    QVERIFY(m_home->find<SvtaForceUpdateSecondDialog>()->isVisible());
    QVERIFY(m_home->find<Dialog>()->isVisible());
    const auto masks =
        m_home->window().findChildren<MaskForm*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(masks.size(), 2);
    QVERIFY(masks.at(0)->isVisible() && masks.at(1)->isVisible());

    bool quit = false;
    connect(qApp, &QCoreApplication::aboutToQuit, this, [&quit] { quit = true; });
    QTimer::singleShot(0, this, [this] {
        QTest::mouseClick(button<SvtaForceUpdateSecondDialog>("btnConfirm"), Qt::LeftButton);
    });
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(7); });
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(quit);
}

void SorvantaHomeOfferTest::quitQuestionOfAForcedOfferCanBeCancelled()
{
    showList();
    m_home->window().slotForceUpdate(m_service->offer(QStringLiteral("setup"), "x"));
    for (int round = 0; round < 2; ++round) {
        QTest::mouseClick(button<Dialog>("btnClose"), Qt::LeftButton);
        QTest::mouseClick(button<SvtaForceUpdateSecondDialog>("btnCancel"), Qt::LeftButton);
        QVERIFY(!m_home->find<SvtaForceUpdateSecondDialog>()->isVisible());
        QVERIFY(m_home->find<Dialog>()->isVisible());
        QCOMPARE(masked(), static_cast<const QDialog*>(m_home->find<Dialog>()));
    }
    QCOMPARE(m_home->window().findChildren<MaskForm*>(QString(), Qt::FindDirectChildrenOnly).size(),
             2);
}

void SorvantaHomeOfferTest::offerShowsAHiddenWindow()
{
    showList();
    m_home->window().hide();
    m_home->window().slotSetUpdateData({});
    QVERIFY(m_home->window().isVisible());
    m_home->window().hide();
    m_home->window().slotForceUpdate({});
    QVERIFY(m_home->window().isVisible());
}

void SorvantaHomeOfferTest::failedDownloadAsks()
{
    showList();
    m_home->window().slotSetUpdateData(m_service->offer(QStringLiteral("setup"), "x"));
    (*m_service)->stop();
    QTest::mouseClick(button<Dialog>("btnUpdate"), Qt::LeftButton);
    QTRY_VERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_home->find<Dialog>()->currentPage(), int(Dialog::DownloadPage));
    QCOMPARE(masked(), static_cast<const QDialog*>(m_home->find<SvtaMessageDialog>()));
    QCOMPARE(message(), QStringLiteral("Downloading failed . Please try again."));
    QCOMPARE(button<SvtaMessageDialog>("btnConfirm")->text(), QStringLiteral("Later"));
    QCOMPARE(button<SvtaMessageDialog>("btnCancel")->text(), QStringLiteral("Retry"));
    QVERIFY(button<SvtaMessageDialog>("btnCancel")->isVisible());
    QCOMPARE(
        m_home->find<Dialog>()->findChild<QLabel*>(QStringLiteral("labDownloadStatus"))->text(),
        QStringLiteral("Download failed"));
}

void SorvantaHomeOfferTest::failedForcedDownloadHasOneButton()
{
    showList();
    m_home->window().slotForceUpdate(m_service->offer(QStringLiteral("setup"), "x"));
    (*m_service)->stop();
    QTest::mouseClick(button<Dialog>("btnUpdate"), Qt::LeftButton);
    QTRY_VERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
    QCOMPARE(message(), QStringLiteral("Download failed, please try again. If no, please contact "
                                       "the administrator."));
    QVERIFY(button<SvtaMessageDialog>("btnCancel")->isHidden());
    QCOMPARE(button<SvtaMessageDialog>("btnConfirm")->text(), QStringLiteral("Later"));
    QCOMPARE(button<SvtaMessageDialog>("btnConfirm")->pos(), QPoint(100, 96));
}

void SorvantaHomeOfferTest::laterTriesAgain()
{
    showList();
    const QByteArray package(50000, 'p');
    m_home->window().slotSetUpdateData(m_service->offer(QStringLiteral("setup"), package));
    QVERIFY((*m_service)->fault(QStringLiteral("truncate 100")));
    QTest::mouseClick(button<Dialog>("btnUpdate"), Qt::LeftButton);
    QTRY_VERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
    (*m_service)->setBehaviour({});
    QVERIFY((*m_service)->fault(QStringLiteral("slow 50000")));
    QTest::mouseClick(button<SvtaMessageDialog>("btnConfirm"), Qt::LeftButton);
    QVERIFY(!m_home->find<SvtaMessageDialog>()->isVisible());
    QVERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_home->find<Dialog>()->currentPage(), int(Dialog::DownloadPage));
    QCOMPARE(masked(), static_cast<const QDialog*>(m_home->find<Dialog>()));
    QTRY_VERIFY(!m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_cache->contentOf(QStringLiteral("setup")), package);
}

void SorvantaHomeOfferTest::retryGivesUp()
{
    showList();
    m_home->window().slotSetUpdateData(m_service->offer(QStringLiteral("setup"), "x"));
    (*m_service)->stop();
    QTest::mouseClick(button<Dialog>("btnUpdate"), Qt::LeftButton);
    QTRY_VERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
    const int before = (*m_service)->requests().size();
    QTest::mouseClick(button<SvtaMessageDialog>("btnCancel"), Qt::LeftButton);
    QVERIFY(!m_home->find<SvtaMessageDialog>()->isVisible());
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_home->find<Dialog>()->currentPage(), int(Dialog::OfferPage));
    QVERIFY(!masked());
    QTest::qWait(100);
    QCOMPARE((*m_service)->requests().size(), before);
}

void SorvantaHomeOfferTest::closingTheFailureMessageGivesUp()
{
    showList();
    m_home->window().slotSetUpdateData(m_service->offer(QStringLiteral("setup"), "x"));
    (*m_service)->stop();
    QTest::mouseClick(button<Dialog>("btnUpdate"), Qt::LeftButton);
    QTRY_VERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
    m_home->find<SvtaMessageDialog>()->close();
    QVERIFY(!m_home->find<SvtaMessageDialog>()->isVisible());
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    m_home->window().slotSetUpdateData(m_service->offer(QStringLiteral("setup"), "x"));
    QVERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_home->find<Dialog>()->currentPage(), int(Dialog::OfferPage));
}

void SorvantaHomeOfferTest::failureMessageOfAForcedUpdateCannotBeClosed()
{
    showList();
    m_home->window().slotForceUpdate(m_service->offer(QStringLiteral("setup"), "x"));
    (*m_service)->stop();
    QTest::mouseClick(button<Dialog>("btnUpdate"), Qt::LeftButton);
    QTRY_VERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
    m_home->find<SvtaMessageDialog>()->close();
    QVERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
}

void SorvantaHomeOfferTest::toastsOfThePagesAreShown()
{
    m_service->answer("{\"needUpgrade\":false}");
    PendingTimers::drop(ShownHome::kStartAnimationMs);
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    m_home->click("deviceInfoBtn");
    m_home->click("btnUpgrade");
    QTRY_COMPARE(m_home->toast(), QStringLiteral("Software is up to date"));
    m_home->window().showView(Pages::AboutUsPage);
    const int checks = m_service->checks();
    m_home->click("btnCheckUpdate");
    QCOMPARE(m_home->toast(), QStringLiteral("Software is up to date"));
    QTest::qWait(100);
    QCOMPARE(m_service->checks(), checks);
}

void SorvantaHomeOfferTest::applicationOfferWaitsForAPageOfTheProgram_data()
{
    QTest::addColumn<bool>("forced");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("shownOn");
    QTest::newRow("settings") << false << int(Pages::SettingPage) << int(Pages::HomePage);
    QTest::newRow("information") << false << int(Pages::InfoPage) << int(Pages::AboutUsPage);
    QTest::newRow("forced") << true << int(Pages::InfoPage) << int(Pages::HomePage);
}

void SorvantaHomeOfferTest::applicationOfferWaitsForAPageOfTheProgram()
{
    QFETCH(const bool, forced);
    QFETCH(const int, page);
    QFETCH(const int, shownOn);
    PendingTimers::drop(ShownHome::kStartAnimationMs);
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    m_home->window().showView(static_cast<Pages::ViewPageEnum>(page));
    const QJsonObject offer = m_service->offer(QStringLiteral("setup"), "x");
    if (forced)
        m_home->window().slotForceUpdate(offer);
    else
        m_home->window().slotSetUpdateData(offer);
    QCoreApplication::processEvents();
    QVERIFY(!m_home->find<Dialog>()->isVisible());

    m_home->window().showView(static_cast<Pages::ViewPageEnum>(shownOn));
    QVERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(title(), QStringLiteral("MarvikTools V" MARVIK_VERSION));
    QCOMPARE(button<Dialog>("btnClose")->isVisible(), forced);
}

void SorvantaHomeOfferTest::firmwareOfferIsIgnoredDuringAnotherDownload()
{
    showList();
    const QByteArray package(50000, 'p');
    m_home->window().slotSetUpdateData(m_service->offer(QStringLiteral("setup"), package));
    QVERIFY((*m_service)->fault(QStringLiteral("slow 50000")));
    QTest::mouseClick(button<Dialog>("btnUpdate"), Qt::LeftButton);
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw.bin"), "y"),
                                         QStringLiteral("NOVA EDGE"));
    QCOMPARE(title(), QStringLiteral("MarvikTools V" MARVIK_VERSION));
    QTRY_VERIFY(!m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_cache->contentOf(QStringLiteral("setup")), package);
}

void SorvantaHomeOfferTest::answerIsDroppedWhenThePageIsLeft()
{
    m_service->answer("{\"needUpgrade\":true}");
    PendingTimers::drop(ShownHome::kStartAnimationMs);
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    m_home->click("deviceInfoBtn");
    m_home->click("btnUpgrade");
    m_home->window().showView(Pages::HomePage);
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    m_home->click("deviceInfoBtn");
    QVERIFY(m_home->find<QPushButton>("btnUpgrade")->isEnabled());
    QTest::qWait(200);
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    m_home->click("btnUpgrade");
    QTRY_VERIFY(m_home->find<Dialog>()->isVisible());
}

void SorvantaHomeOfferTest::programChecksForItsUpdateWhenTheListIsShown()
{
    TestVendor::setChecksForApplicationUpdate(true);
    m_service->answer("{\"needUpgrade\":false}");
    QTest::qWait(100);
    QCOMPARE(m_service->checks(), 0);
    QVERIFY(m_home->passStart());
    QTRY_COMPARE(m_service->checks(), 1);
    QCOMPARE((*m_service)->requests().constFirst().body,
             QByteArray("{\"terminalType\":\"SCW\",\n\"version\":\"" MARVIK_VERSION "\",\n}"));
    m_home->window().showView(Pages::StartPage);
    QVERIFY(m_home->passStart());
    QTest::qWait(200);
    QCOMPARE(m_service->checks(), 1);
    QCOMPARE(m_home->toast(), QString());
}

void SorvantaHomeOfferTest::programsOwnOfferIsShown()
{
    TestVendor::setChecksForApplicationUpdate(true);
    m_service->answer("{\"needUpgrade\":true,\"details\":\"Faster\"}");
    QVERIFY(m_home->passStart());
    QTRY_VERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(title(), QStringLiteral("MarvikTools V" MARVIK_VERSION));
    QVERIFY(button<Dialog>("btnPauseUpdate")->isVisible());
    QVERIFY(button<Dialog>("btnClose")->isHidden());
}

void SorvantaHomeOfferTest::otherAnswersAboutTheProgramShowNothing_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("fault");
    QTest::newRow("up to date") << QByteArray("{\"needUpgrade\":false}") << QString();
    QTest::newRow("text") << QByteArray("{\"needUpgrade\":\"true\"}") << QString();
    QTest::newRow("number") << QByteArray("{\"needUpgrade\":1}") << QString();
    QTest::newRow("missing") << QByteArray("{}") << QString();
    QTest::newRow("no JSON") << QByteArray("<html>") << QString();
    QTest::newRow("error") << QByteArray("{\"needUpgrade\":true}") << QStringLiteral("status 500");
}

void SorvantaHomeOfferTest::otherAnswersAboutTheProgramShowNothing()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, fault);
    TestVendor::setChecksForApplicationUpdate(true);
    m_service->answer(answer);
    if (!fault.isEmpty())
        QVERIFY((*m_service)->fault(fault));
    QVERIFY(m_home->passStart());
    QTRY_COMPARE(m_service->checks(), 1);
    QTRY_VERIFY(m_log->contains(QStringLiteral("no new version")) ||
                !m_log->texts().filter(QStringLiteral("no answer about a new version")).isEmpty());
    QTest::qWait(50);
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_home->toast(), QString());
}

void SorvantaHomeOfferTest::programDoesNotCheckForItsUpdate_data()
{
    QTest::addColumn<bool>("checks");
    QTest::addColumn<QString>("address");
    QTest::newRow("updated by other means") << false << QString();
    QTest::newRow("no service") << true << QStringLiteral("https://update.sorvanta.invalid");
}

void SorvantaHomeOfferTest::programDoesNotCheckForItsUpdate()
{
    QFETCH(const bool, checks);
    QFETCH(const QString, address);
    TestVendor::setChecksForApplicationUpdate(checks);
    if (!address.isEmpty())
        TestVendor::setUpdateBaseUrl(address);
    m_log->clear();
    QVERIFY(m_home->passStart());
    QTest::qWait(200);
    QCOMPARE(m_service->checks(), 0);
    QVERIFY(m_log->texts().filter(QStringLiteral("no answer about a new version")).isEmpty());
}

QTEST_MAIN(SorvantaHomeOfferTest)
#include "SorvantaHomeOfferTest.moc"
