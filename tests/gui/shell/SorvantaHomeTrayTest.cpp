#include "OnScreen.h"
#include "Pointer.h"
#include "ShownHome.h"

#include <algorithm>
#include <memory>
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QtTest>

using Pages = SvtaPagesView;

/// The window and its icon in the system tray.
class SorvantaHomeTrayTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void iconIsInTheTrayFromTheStart();
    void menuHasOneEntry();
    void showActionIsNotInTheMenu();
    void closingHidesTheWindow();
    void closingAMinimizedWindowHidesIt();
    void closingWithoutAnIconEndsTheProgram();
    void quitEndsTheProgram();

    void activationRestores_data();
    void activationRestores();
    void otherActivationsDoNothing_data();
    void otherActivationsDoNothing();

    void activationLeavesAShownWindowShown();
    void clickOnTheIconRestores();
    void middleClickOnTheIconDoesNothing();
    void rightClickOnTheIconOpensTheMenu();
    void clickOnQuitInTheMenuEndsTheProgram();

private:
    [[nodiscard]] QSystemTrayIcon* icon() const { return m_home->find<QSystemTrayIcon>(); }
    [[nodiscard]] SorvantaHome& window() const { return m_home->window(); }
    /// The centre of the icon, after the tray has accepted it.
    [[nodiscard]] QPoint inTray() const
    {
        QTest::qWait(QApplication::doubleClickInterval()); // or it would be a double click with
                                                           // that of the last test
        const auto isEmbedded = [this] { return icon()->geometry().width() > 4; };
        return QTest::qWaitFor(isEmbedded) ? icon()->geometry().center() : QPoint();
    }

    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeTrayTest::init()
{
    m_home = std::make_unique<ShownHome>();
    QVERIFY(m_home->isPlaced());
    QVERIFY(QSystemTrayIcon::isSystemTrayAvailable());
}

void SorvantaHomeTrayTest::cleanup()
{
    m_home.reset();
}

void SorvantaHomeTrayTest::iconIsInTheTrayFromTheStart()
{
    QVERIFY(icon()->isVisible());
    QCOMPARE(icon()->toolTip(), QStringLiteral("MarvikTools"));
    QVERIFY(!icon()->icon().pixmap(32, 32).isNull());
    QCOMPARE(icon()->parent(), &window());
}

void SorvantaHomeTrayTest::menuHasOneEntry()
{
    const QMenu* menu = icon()->contextMenu();
    QVERIFY(menu);
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().first()->text(), QStringLiteral("Quit"));
    for (const char* part : {"#DBDBDB", "#2dabf9", "8px 32px"})
        QVERIFY2(menu->styleSheet().contains(QLatin1String(part)), part);
}

void SorvantaHomeTrayTest::showActionIsNotInTheMenu()
{
    const auto actions = window().findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    const auto show = std::find_if(actions.begin(), actions.end(), [](const QAction* action) {
        return action->text() == QLatin1String("Show");
    });
    QVERIFY(show != actions.end());
    QVERIFY((*show)->associatedWidgets().isEmpty());
    window().hide();
    (*show)->trigger();
    QVERIFY(window().isHidden());
}

void SorvantaHomeTrayTest::closingHidesTheWindow()
{
    QSignalSpy ended(qApp, &QGuiApplication::lastWindowClosed);
    m_home->closeToTray();
    QVERIFY(window().isHidden());
    QCOMPARE(ended.count(), 0);
    QVERIFY(icon()->isVisible());
}

void SorvantaHomeTrayTest::closingAMinimizedWindowHidesIt()
{
    window().slotMinimum();
    QTRY_VERIFY(window().isMinimized());
    QVERIFY(!window().close());
    QVERIFY(window().isHidden());
    ShownHome::waitForLossOfFocus();
    window().slotTrayActivated(QSystemTrayIcon::Trigger);
    QTRY_VERIFY(window().isActiveWindow());
    QVERIFY(!window().isMinimized());
}

void SorvantaHomeTrayTest::closingWithoutAnIconEndsTheProgram()
{
    icon()->hide();
    QTimer::singleShot(0, &window(), &SorvantaHome::slotClose);
    QTimer rescue;
    rescue.setSingleShot(true);
    QSignalSpy late(&rescue, &QTimer::timeout);
    connect(&rescue, &QTimer::timeout, qApp, &QCoreApplication::quit);
    rescue.start(5000);
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(late.count(), 0);
    QVERIFY(window().isHidden());
}

void SorvantaHomeTrayTest::quitEndsTheProgram()
{
    QAction* quit = icon()->contextMenu()->actions().first();
    QTimer::singleShot(0, quit, &QAction::trigger);
    QTimer rescue;
    connect(&rescue, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
    rescue.start(5000);
    QCOMPARE(QApplication::exec(), 0);
}

void SorvantaHomeTrayTest::activationRestores_data()
{
    QTest::addColumn<int>("reason");
    QTest::addColumn<bool>("hidden");
    QTest::newRow("click, hidden") << int(QSystemTrayIcon::Trigger) << true;
    QTest::newRow("double click, hidden") << int(QSystemTrayIcon::DoubleClick) << true;
    QTest::newRow("click, minimized") << int(QSystemTrayIcon::Trigger) << false;
    QTest::newRow("double click, minimized") << int(QSystemTrayIcon::DoubleClick) << false;
}

void SorvantaHomeTrayTest::activationRestores()
{
    QFETCH(const int, reason);
    QFETCH(const bool, hidden);
    const QPoint place = window().pos();
    if (hidden)
        m_home->closeToTray();
    else
        window().slotMinimum();
    QTRY_VERIFY(hidden ? window().isHidden() : window().isMinimized());
    emit icon()->activated(static_cast<QSystemTrayIcon::ActivationReason>(reason));
    QTRY_VERIFY(window().isVisible() && !window().isMinimized());
    QTRY_VERIFY(window().isActiveWindow());
    QTRY_VERIFY(OnScreen::isShown(window()));
    QTRY_COMPARE(OnScreen::placeOf(window()).topLeft(), place);
}

void SorvantaHomeTrayTest::otherActivationsDoNothing_data()
{
    QTest::addColumn<int>("reason");
    QTest::newRow("middle click") << int(QSystemTrayIcon::MiddleClick);
    QTest::newRow("right click") << int(QSystemTrayIcon::Context);
    QTest::newRow("unknown") << int(QSystemTrayIcon::Unknown);
}

void SorvantaHomeTrayTest::otherActivationsDoNothing()
{
    QFETCH(const int, reason);
    m_home->closeToTray();
    emit icon()->activated(static_cast<QSystemTrayIcon::ActivationReason>(reason));
    QTest::qWait(50);
    QVERIFY(window().isHidden());
}

void SorvantaHomeTrayTest::activationLeavesAShownWindowShown()
{
    for (int round = 0; round < 3; ++round) {
        emit icon()->activated(QSystemTrayIcon::Trigger);
        QTest::qWait(200); // time for the window manager to restore it, which it must not
        QVERIFY(OnScreen::isShown(window()));
        QVERIFY(window().isVisible() && !window().isMinimized());
        QVERIFY(window().isActiveWindow());
    }
}

void SorvantaHomeTrayTest::clickOnTheIconRestores()
{
    m_home->closeToTray();
    Pointer::clickAt(inTray());
    QTRY_VERIFY(window().isVisible());
    QTRY_VERIFY(window().isActiveWindow());
}

void SorvantaHomeTrayTest::middleClickOnTheIconDoesNothing()
{
    m_home->closeToTray();
    QList<QSystemTrayIcon::ActivationReason> reasons;
    connect(icon(), &QSystemTrayIcon::activated, this,
            [&reasons](QSystemTrayIcon::ActivationReason reason) { reasons << reason; });
    Pointer::clickAt(inTray(), 2);
    QTRY_COMPARE(reasons, QList<QSystemTrayIcon::ActivationReason>{QSystemTrayIcon::MiddleClick});
    QVERIFY(window().isHidden());
    QVERIFY(!icon()->contextMenu()->isVisible());
}

void SorvantaHomeTrayTest::rightClickOnTheIconOpensTheMenu()
{
    m_home->closeToTray();
    QMenu* menu = icon()->contextMenu();
    Pointer::clickAt(inTray(), 3);
    QTRY_VERIFY(menu->isVisible());
    QCOMPARE(menu->actions().size(), 1);
    QVERIFY(window().isHidden());
    QTest::keyClick(menu, Qt::Key_Escape);
    QTRY_VERIFY(!menu->isVisible());
}

void SorvantaHomeTrayTest::clickOnQuitInTheMenuEndsTheProgram()
{
    const QPoint place = inTray();
    QMenu* menu = icon()->contextMenu();
    bool opened = false;
    QTimer::singleShot(0, this, [place, menu, &opened] {
        Pointer::clickAt(place, 3);
        opened = QTest::qWaitFor([menu] { return menu->isVisible(); });
        QTest::qWait(100);
        Pointer::clickAt(menu->mapToGlobal(menu->actionGeometry(menu->actions().first()).center()));
    });
    QTimer rescue;
    connect(&rescue, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
    rescue.start(10000);
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(opened);
}

QTEST_MAIN(SorvantaHomeTrayTest)
#include "SorvantaHomeTrayTest.moc"
