#include "LoadingDialog.h"
#include "OnScreen.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaSupportedProductDialog.h"
#include "SvtaVersionUpdateDialog.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QtTest>

using Maker = std::function<std::unique_ptr<SvtaBaseDialog>(QWidget*)>;
Q_DECLARE_METATYPE(Maker)
using ButtonDialogMaker = std::function<std::unique_ptr<QDialog>()>;
Q_DECLARE_METATYPE(ButtonDialogMaker)

namespace {

template <typename Dialog>
Maker maker()
{
    return [](QWidget* parent) { return std::make_unique<Dialog>(parent); };
}

template <typename Dialog>
ButtonDialogMaker buttonDialogMaker()
{
    return [] { return std::make_unique<Dialog>(); };
}

/// The buttons of @p dialog that the user can reach with Tab now.
QList<QPushButton*> reachableButtons(const QDialog& dialog)
{
    QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
    buttons.erase(std::remove_if(buttons.begin(), buttons.end(),
                                 [](const QPushButton* button) {
                                     return !button->isVisible() || !button->isEnabled() ||
                                            (button->focusPolicy() & Qt::TabFocus) == 0;
                                 }),
                  buttons.end());
    return buttons;
}

/// Counts the key presses that a dialog leaves to its parent.
class KeyParent : public QWidget
{
public:
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent*) override { ++keys; }
};

} // namespace

/// What all dialogs have in common, for each of them.
class SvtaBaseDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void baseStartsWithItsNameAndSize();

    void everyDialogIsFramelessAndSeeThrough_data() { dialogs(); }
    void everyDialogIsFramelessAndSeeThrough();
    void everyDialogOpensInTheMiddleOfTheScreen_data() { dialogs(); }
    void everyDialogOpensInTheMiddleOfTheScreen();
    void resizingCentresAgain_data();
    void resizingCentresAgain();
    void escapeLeavesEveryDialogOpen_data() { dialogs(); }
    void escapeLeavesEveryDialogOpen();
    void returnPressesNoButton_data() { dialogs(); }
    void returnPressesNoButton();
    void returnPressesNotEvenTheFocusedButton_data() { buttonDialogs(); }
    void returnPressesNotEvenTheFocusedButton();
    void spacePressesTheFocusedButton_data() { buttonDialogs(); }
    void spacePressesTheFocusedButton();
    void draggingDoesNotMoveTheDialog_data() { dialogs(); }
    void draggingDoesNotMoveTheDialog();
    void otherKeysGoToTheParent();
    void hidingKeepsWhatIsInTheDialog();

private:
    static void dialogs();
    static void buttonDialogs();
    static bool show(QWidget& dialog)
    {
        dialog.show();
        dialog.activateWindow();
        return QTest::qWaitForWindowActive(&dialog);
    }
};

void SvtaBaseDialogTest::dialogs()
{
    QTest::addColumn<Maker>("make");
    QTest::newRow("base") << maker<SvtaBaseDialog>();
    QTest::newRow("message") << maker<SvtaMessageDialog>();
    QTest::newRow("stop update") << maker<SvtaForceUpdateSecondDialog>();
    QTest::newRow("not saved") << maker<SvtaParamNotSaveDialog>();
    QTest::newRow("reset") << maker<SvtaParamResetDialog>();
    QTest::newRow("save") << maker<SvtaParamSaveDialog>();
    QTest::newRow("centre tip") << maker<SvtaCenterTipDialog>();
    QTest::newRow("loading") << maker<LoadingDialog>();
}

/// Every dialog of the program that has buttons.
void SvtaBaseDialogTest::buttonDialogs()
{
    QTest::addColumn<ButtonDialogMaker>("make");
    QTest::newRow("message") << buttonDialogMaker<SvtaMessageDialog>();
    QTest::newRow("stop update") << buttonDialogMaker<SvtaForceUpdateSecondDialog>();
    QTest::newRow("not saved") << buttonDialogMaker<SvtaParamNotSaveDialog>();
    QTest::newRow("reset") << buttonDialogMaker<SvtaParamResetDialog>();
    QTest::newRow("save") << buttonDialogMaker<SvtaParamSaveDialog>();
    QTest::newRow("centre tip") << buttonDialogMaker<SvtaCenterTipDialog>();
    QTest::newRow("update") << buttonDialogMaker<SvtaVersionUpdateDialog>();
    QTest::newRow("supported products") << buttonDialogMaker<SvtaSupportedProductDialog>();
}

void SvtaBaseDialogTest::baseStartsWithItsNameAndSize()
{
    const SvtaBaseDialog dialog;
    QCOMPARE(dialog.objectName(), QStringLiteral("SvtaBaseDialog"));
    QCOMPARE(dialog.size(), QSize(400, 300));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Dialog"));
    QVERIFY(!dialog.isVisible());
}

void SvtaBaseDialogTest::everyDialogIsFramelessAndSeeThrough()
{
    QFETCH(const Maker, make);
    const auto dialog = make(nullptr);
    QCOMPARE(dialog->windowFlags(), Qt::WindowFlags(Qt::Dialog | Qt::FramelessWindowHint));
    QVERIFY(dialog->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Dialog"));
}

void SvtaBaseDialogTest::everyDialogOpensInTheMiddleOfTheScreen()
{
    QFETCH(const Maker, make);
    QWidget window;
    window.setGeometry(20, 700, 200, 200);
    QVERIFY(show(window));
    const auto dialog = make(&window);
    QVERIFY(show(*dialog));
    const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
    QCOMPARE(screen, QSize(1280, 1024));
    QTRY_COMPARE(OnScreen::placeOf(*dialog).topLeft(),
                 QPoint(1280 / 2 - dialog->width() / 2, 1024 / 2 - dialog->height() / 2));
}

void SvtaBaseDialogTest::resizingCentresAgain_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("even") << QSize(600, 200);
    QTest::newRow("odd: each half is rounded down by itself") << QSize(301, 151);
}

void SvtaBaseDialogTest::resizingCentresAgain()
{
    QFETCH(const QSize, size);
    SvtaBaseDialog dialog;
    QVERIFY(show(dialog));
    dialog.move(3, 50);
    QTRY_COMPARE(OnScreen::placeOf(dialog).topLeft(), QPoint(3, 50));
    dialog.resize(size);
    QTRY_COMPARE(OnScreen::placeOf(dialog).topLeft(),
                 QPoint(640 - size.width() / 2, 512 - size.height() / 2));
}

void SvtaBaseDialogTest::escapeLeavesEveryDialogOpen()
{
    QFETCH(const Maker, make);
    KeyParent parent;
    const auto dialog = make(&parent);
    QSignalSpy finished(dialog.get(), &QDialog::finished);
    QVERIFY(show(*dialog));
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    for (QWidget* child : dialog->findChildren<QPushButton*>())
        QTest::keyClick(child, Qt::Key_Escape);
    QVERIFY(dialog->isVisible());
    QCOMPARE(finished.count(), 0);
}

void SvtaBaseDialogTest::returnPressesNoButton()
{
    QFETCH(const Maker, make);
    const auto dialog = make(nullptr);
    QVERIFY(show(*dialog));
    int clicks = 0;
    for (const QPushButton* button : dialog->findChildren<QPushButton*>())
        connect(button, &QPushButton::clicked, this, [&clicks] { ++clicks; });
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(dialog.get(), key);
    QCOMPARE(clicks, 0);
    QVERIFY(dialog->isVisible());
}

void SvtaBaseDialogTest::returnPressesNotEvenTheFocusedButton()
{
    QFETCH(const ButtonDialogMaker, make);
    const auto dialog = make();
    QVERIFY(show(*dialog));
    const QList<QPushButton*> buttons = reachableButtons(*dialog);
    QVERIFY(!buttons.isEmpty());
    for (QPushButton* button : buttons) {
        button->setFocus(Qt::TabFocusReason);
        QCOMPARE(QApplication::focusWidget(), button);
        const QSignalSpy clicks(button, &QPushButton::clicked);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
            QTest::keyClick(QApplication::focusWidget(), key);
        QVERIFY2(clicks.isEmpty(), qPrintable(button->objectName()));
        QVERIFY(dialog->isVisible());
    }
}

void SvtaBaseDialogTest::spacePressesTheFocusedButton()
{
    QFETCH(const ButtonDialogMaker, make);
    const auto dialog = make();
    QVERIFY(show(*dialog));
    for (QPushButton* button : reachableButtons(*dialog)) {
        button->disconnect(); // what the button does is not of interest, and it may hide the dialog
        button->setFocus(Qt::TabFocusReason);
        const QSignalSpy clicks(button, &QPushButton::clicked);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY2(clicks.count() == 1, qPrintable(button->objectName()));
    }
}

void SvtaBaseDialogTest::draggingDoesNotMoveTheDialog()
{
    QFETCH(const Maker, make);
    const auto dialog = make(nullptr);
    QVERIFY(show(*dialog));
    const QPoint place = OnScreen::placeOf(*dialog).topLeft();
    QWidget* panel = dialog->findChild<QWidget*>(QStringLiteral("bgWidget"));
    QWidget* target = panel ? panel : dialog.get();
    QTest::mousePress(target, Qt::LeftButton, Qt::NoModifier, {12, 12});
    // QTest::mouseMove() presses no button.
    for (const QPoint& by : {QPoint(20, 10), QPoint(60, 40)}) {
        const QPoint at = QPoint(12, 12) + by;
        QMouseEvent move(QEvent::MouseMove, at, target->mapToGlobal(at), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &move);
    }
    QTest::mouseRelease(target, Qt::LeftButton, Qt::NoModifier, {72, 52});
    QTest::qWait(20);
    QCOMPARE(OnScreen::placeOf(*dialog).topLeft(), place);
}

void SvtaBaseDialogTest::otherKeysGoToTheParent()
{
    KeyParent parent;
    SvtaBaseDialog inside(&parent);
    inside.setWindowFlags(Qt::Widget); // a separate window does not pass its keys on
    parent.show();
    QTest::keyClick(&inside, Qt::Key_A);
    QTest::keyClick(&inside, Qt::Key_Return);
    QCOMPARE(parent.keys, 2);
    QTest::keyClick(&inside, Qt::Key_Escape);
    QCOMPARE(parent.keys, 2);
}

void SvtaBaseDialogTest::hidingKeepsWhatIsInTheDialog()
{
    SvtaMessageDialog dialog;
    dialog.setMessage(QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three"), true);
    QVERIFY(show(dialog));
    dialog.hide();
    QVERIFY(show(dialog));
    QCOMPARE(dialog.findChild<QPushButton*>(QStringLiteral("btnConfirm"))->text(),
             QStringLiteral("two"));
    QVERIFY(!dialog.findChild<QPushButton*>(QStringLiteral("btnCancel"))->isVisible());
}

QTEST_MAIN(SvtaBaseDialogTest)
#include "SvtaBaseDialogTest.moc"
