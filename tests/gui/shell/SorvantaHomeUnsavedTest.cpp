#include "LogCapture.h"
#include "MaskedDialog.h"
#include "ShownHome.h"
#include "SvtaParamNotSaveDialog.h"

#include <memory>
#include <QPushButton>
#include <QtTest>

using Pages = SvtaPagesView;

/// Leaving the settings page with unsaved edits.
class SorvantaHomeUnsavedTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void backAsksAndStaysOnThePage();
    void closingTheQuestionStaysOnThePage();
    void leavingDiscardsAndReturnsToTheList();
    void questionComesAgainAfterItWasClosed();
    void informationPageIsOpenedWithoutAQuestion();
    void quitDiscardsTheEdits();

private:
    [[nodiscard]] QWidget* question() const { return m_home->find<SvtaParamNotSaveDialog>(); }
    [[nodiscard]] const MaskForm* mask() const
    {
        return m_home->window().findChild<MaskForm*>({}, Qt::FindDirectChildrenOnly);
    }
    void clickInQuestion(const char* name) const
    {
        QTest::mouseClick(question()->findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeUnsavedTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>();
    QVERIFY(m_home->isPlaced());
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
    QVERIFY(m_home->window().isSameData());
    m_home->window().slotCameraBrightValueChanged(101);
    QVERIFY(!m_home->window().isSameData());
}

void SorvantaHomeUnsavedTest::cleanup()
{
    m_home.reset();
    m_log.reset();
}

void SorvantaHomeUnsavedTest::backAsksAndStaysOnThePage()
{
    m_home->click("backBtn");
    QVERIFY(QTest::qWaitForWindowExposed(question()));
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QVERIFY(question()->isModal());
    QVERIFY(mask()->isVisible());
    QCOMPARE(dialogOver(mask()), static_cast<const QDialog*>(question()));
    QVERIFY(m_log->contains(QStringLiteral("flag false")));
}

void SorvantaHomeUnsavedTest::closingTheQuestionStaysOnThePage()
{
    m_home->click("backBtn");
    QVERIFY(QTest::qWaitForWindowExposed(question()));
    clickInQuestion("btnClose");
    QVERIFY(!question()->isVisible());
    QVERIFY(!mask()->isVisible());
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QVERIFY(!m_home->window().isSameData());
}

void SorvantaHomeUnsavedTest::leavingDiscardsAndReturnsToTheList()
{
    m_home->click("backBtn");
    QVERIFY(QTest::qWaitForWindowExposed(question()));
    clickInQuestion("btnCancel");
    QTRY_COMPARE(m_home->page(), int(Pages::HomePage));
    QVERIFY(!question()->isVisible());
    QVERIFY(!mask()->isVisible());
    QVERIFY(m_home->window().isSameData());
}

void SorvantaHomeUnsavedTest::questionComesAgainAfterItWasClosed()
{
    m_home->click("backBtn");
    clickInQuestion("btnClose");
    QVERIFY(m_home->passBackLock());
    m_home->click("backBtn");
    QVERIFY(question()->isVisible());
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
}

void SorvantaHomeUnsavedTest::informationPageIsOpenedWithoutAQuestion()
{
    m_home->click("deviceInfoBtn");
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    QVERIFY(!question()->isVisible());
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QVERIFY(!question()->isVisible());
    QVERIFY(!m_home->window().isSameData());
}

void SorvantaHomeUnsavedTest::quitDiscardsTheEdits()
{
    m_home->window().slotShowMoreMenu();
    QTest::mouseClick(m_home->find<QPushButton>("btnQuit"), Qt::LeftButton);
    QVERIFY(!m_home->window().isVisible());
    QVERIFY(m_home->window().isSameData());
}

QTEST_MAIN(SorvantaHomeUnsavedTest)
#include "SorvantaHomeUnsavedTest.moc"
