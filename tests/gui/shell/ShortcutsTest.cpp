#include "ShownHome.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaSupportedProductDialog.h"
#include "TransparentBtn.h"
#include "TransPrewBtn.h"

#include <memory>
#include <QPushButton>
#include <QtTest>

using Pages = SvtaPagesView;

/// Keys that work wherever the focus is.
class ShortcutsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void backLeavesEveryPage_data();
    void backLeavesEveryPage();
    void backDoesNothingOnTheList();
    void informationPageOpensFromTheSettings();
    void settingsHaveKeysForTheirButtons();
    void previewAndGridAreSwitched();
    void secondPressWhileTheCameraStopsIsDropped();
    void keysOfTheSettingsDoNothingElsewhere();
    void helpBelongsToThePage();
    void dialogKeepsTheKeys();
    void toolTipsNameTheKeys();

private:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&m_home->window(), key, modifiers);
    }
    template <typename Dialog>
    [[nodiscard]] bool isUp() const
    {
        return m_home->find<Dialog>()->isVisible();
    }

    std::unique_ptr<ShownHome> m_home;
};

void ShortcutsTest::init()
{
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    QVERIFY(m_home->passStart());
}

void ShortcutsTest::cleanup()
{
    m_home.reset();
}

void ShortcutsTest::backLeavesEveryPage_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addRow("Alt+Left") << int(Qt::Key_Left) << int(Qt::AltModifier);
    QTest::addRow("Back") << int(Qt::Key_Back) << int(Qt::NoModifier);
}

void ShortcutsTest::backLeavesEveryPage()
{
    QFETCH(const int, key);
    QFETCH(const int, modifiers);
    QVERIFY(m_home->openSettings());
    press(Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    press(Qt::Key_F1);
    QCOMPARE(m_home->page(), int(Pages::AboutUsPage));
    for (const int page : {Pages::InfoPage, Pages::SettingPage, Pages::HomePage}) {
        QTest::keyClick(&m_home->window(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(m_home->page(), page);
        QVERIFY(m_home->passBackLock());
    }
}

void ShortcutsTest::backDoesNothingOnTheList()
{
    press(Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(m_home->page(), int(Pages::HomePage));
}

void ShortcutsTest::informationPageOpensFromTheSettings()
{
    press(Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(m_home->page(), int(Pages::HomePage)); // no camera is open
    QVERIFY(m_home->openSettings());
    press(Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
}

void ShortcutsTest::settingsHaveKeysForTheirButtons()
{
    QVERIFY(m_home->openSettings());
    press(Qt::Key_D, Qt::ControlModifier);
    QVERIFY(isUp<SvtaParamResetDialog>());
    m_home->find<SvtaParamResetDialog>()->hide();
    QTRY_VERIFY(m_home->window().isActiveWindow());
    press(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(isUp<SvtaParamSaveDialog>());
}

void ShortcutsTest::previewAndGridAreSwitched()
{
    QVERIFY(m_home->openSettings());
    const QSignalSpy switched(m_home->find<TransPrewBtn>(), &TransPrewBtn::sigHandleCapture);
    press(Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(switched.size(), 1);
    auto* grid = m_home->window().findChild<QWidget*>(QStringLiteral("TransparentWidget"));
    QVERIFY(grid);
    const bool wasVisible = grid->isVisible();
    press(Qt::Key_G, Qt::ControlModifier);
    QCOMPARE(grid->isVisible(), !wasVisible);
}

void ShortcutsTest::secondPressWhileTheCameraStopsIsDropped()
{
    QVERIFY(m_home->openSettings());
    const QStringList& calls = m_home->cameras().video().preview().steps;
    const int before = calls.size();
    press(Qt::Key_P, Qt::ControlModifier);
    const int once = calls.size();
    QVERIFY(once > before);
    press(Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(calls.size(), once);
}

void ShortcutsTest::keysOfTheSettingsDoNothingElsewhere()
{
    const QSignalSpy switched(m_home->find<TransPrewBtn>(), &TransPrewBtn::sigHandleCapture);
    press(Qt::Key_P, Qt::ControlModifier);
    press(Qt::Key_S, Qt::ControlModifier);
    press(Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(switched.size(), 0);
    QVERIFY(!isUp<SvtaParamSaveDialog>());
    QVERIFY(!isUp<SvtaParamResetDialog>());
}

void ShortcutsTest::helpBelongsToThePage()
{
    press(Qt::Key_F1);
    QVERIFY(isUp<SvtaSupportedProductDialog>());
    m_home->find<SvtaSupportedProductDialog>()->hide();
    QVERIFY(m_home->openSettings());
    press(Qt::Key_F1);
    QVERIFY(isUp<SvtaCenterTipDialog>());
}

void ShortcutsTest::dialogKeepsTheKeys()
{
    QVERIFY(m_home->openSettings());
    press(Qt::Key_D, Qt::ControlModifier);
    auto* dialog = m_home->find<SvtaParamResetDialog>();
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    QTest::keyClick(dialog, Qt::Key_Left, Qt::AltModifier);
    QTest::keyClick(dialog, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QVERIFY(!isUp<SvtaParamSaveDialog>());
}

void ShortcutsTest::toolTipsNameTheKeys()
{
    const auto tip = [this](const char* name) { return m_home->find(name)->toolTip(); };
    QCOMPARE(tip("backBtn"), QStringLiteral("Back (Alt+Left)"));
    QCOMPARE(tip("deviceInfoBtn"), QStringLiteral("Device information (Ctrl+I)"));
    QCOMPARE(tip("moreBtn"), QStringLiteral("More (F10)"));
    QCOMPARE(tip("btnPramaSava"), QStringLiteral("Save (Ctrl+S)"));
    QCOMPARE(tip("btnPramaReset"), QStringLiteral("Default (Ctrl+D)"));
    QCOMPARE(tip("TransPrewBtn"), QStringLiteral("Preview (Ctrl+P)"));
    QCOMPARE(tip("TransparentBtn"), QStringLiteral("Grid (Ctrl+G)"));
}

QTEST_MAIN(ShortcutsTest)

#include "ShortcutsTest.moc"
