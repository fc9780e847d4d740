#include "SvtaCenterTipDialog.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"

#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

namespace {

using Texts = QMap<QString, QString>;

/// The texts of all labels and buttons by object name, without those that have no text.
Texts textsOf(const QWidget& dialog)
{
    Texts texts;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        texts.insert(label->objectName(), label->text());
    for (const QPushButton* button : dialog.findChildren<QPushButton*>())
        texts.insert(button->objectName(), button->text());
    for (const QString& name : texts.keys(QString()))
        texts.remove(name);
    return texts;
}

template <typename Widget = QWidget>
Widget* find(const QWidget& dialog, const char* name)
{
    auto* widget = dialog.findChild<Widget*>(QLatin1String(name));
    if (!widget)
        qFatal("no %s", name);
    return widget;
}

void click(const QWidget& dialog, const char* name)
{
    QTest::mouseClick(find<QPushButton>(dialog, name), Qt::LeftButton);
}

QRect placeOf(const QWidget& dialog, const char* name)
{
    return find(dialog, name)->geometry();
}

/// A dialog on the screen, and its signals.
template <typename Dialog>
struct Shown
{
    Shown()
    {
        dialog.show();
        shown = QTest::qWaitForWindowExposed(&dialog);
    }
    Dialog dialog;
    bool shown = false;
};

} // namespace

/// Texts, positions and buttons of the question and message dialogs.
class MessageDialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void messageHasItsDefaultTexts();
    void messageHasItsPlaces();
    void messageHasThePanelBorderOfAllDialogs();
    void messageWithAChoiceShowsBothButtons();
    void forcedMessageShowsOneButtonInTheMiddle();
    void messageBecomesAChoiceAgain();
    void messageShowsMarkupAsItIs();
    void laterIsSignalledAndLeavesTheMessageOpen();
    void retryIsSignalledAndLeavesTheMessageOpen();

    void stopUpdateHasItsTexts();
    void stopUpdateHasItsPlaces();
    void cancellingStopUpdateOnlyHidesIt();
    void confirmingStopUpdateIsSignalled();

    void notSavedHasItsTexts();
    void notSavedSignalsItsAnswersAndStaysOpen();
    void closingNotSavedHidesIt();
    void resetHasItsTexts();
    void resetSignalsItsAnswersAndStaysOpen();
    void saveHasItsTexts();
    void saveSignalsItsAnswersAndStaysOpen();
    void centreTipHasItsTexts();
    void centreTipIsHiddenByItsButton();

private:
    template <typename Dialog>
    static void checkConfirmAndCancel()
    {
        Shown<Dialog> now;
        QVERIFY(now.shown);
        QSignalSpy confirmed(&now.dialog, &Dialog::sigConfirm);
        QSignalSpy cancelled(&now.dialog, &Dialog::sigCancel);
        click(now.dialog, "btnConfirm");
        QCOMPARE(confirmed.count(), 1);
        QCOMPARE(cancelled.count(), 0);
        click(now.dialog, "btnCancel");
        QCOMPARE(confirmed.count(), 1);
        QCOMPARE(cancelled.count(), 1);
        QVERIFY(now.dialog.isVisible());
    }
};

void MessageDialogsTest::messageHasItsDefaultTexts()
{
    const SvtaMessageDialog dialog;
    QCOMPARE(textsOf(dialog),
             (Texts{{"labMessage", "Download failed, please try again. If no, please contact the "
                                   "administrator."},
                    {"btnCancel", "Try again later"},
                    {"btnConfirm", "Try again"}}));
    QVERIFY(find<QLabel>(dialog, "labMessage")->wordWrap());
    QCOMPARE(find<QLabel>(dialog, "labMessage")->alignment(), Qt::AlignCenter);
}

void MessageDialogsTest::messageHasItsPlaces()
{
    const SvtaMessageDialog dialog;
    QCOMPARE(dialog.size(), QSize(280, 156));
    QCOMPARE(placeOf(dialog, "bgWidget"), QRect(0, 0, 280, 156));
    QCOMPARE(placeOf(dialog, "labMessage"), QRect(14, 21, 251, 60));
    QCOMPARE(find(dialog, "labMessage")->minimumSize(), QSize(232, 40));
    QCOMPARE(placeOf(dialog, "btnCancel"), QRect(41, 97, 91, 41));
    QCOMPARE(placeOf(dialog, "btnConfirm"), QRect(148, 96, 91, 41));
}

void MessageDialogsTest::messageHasThePanelBorderOfAllDialogs()
{
    const auto borderOf = [](const QWidget& dialog) {
        auto* panel = dialog.findChild<QWidget*>(QStringLiteral("bgWidget"));
        return panel->grab().toImage().pixelColor(panel->width() / 2, 0);
    };
    constexpr QColor border(0xC5, 0xC6, 0xC9);
    QCOMPARE(borderOf(Shown<SvtaMessageDialog>().dialog), border);
    QCOMPARE(borderOf(Shown<SvtaForceUpdateSecondDialog>().dialog), border);
    QCOMPARE(borderOf(Shown<SvtaParamNotSaveDialog>().dialog), border);
    QCOMPARE(borderOf(Shown<SvtaParamSaveDialog>().dialog), border);
    QCOMPARE(borderOf(Shown<SvtaCenterTipDialog>().dialog), border);
}

void MessageDialogsTest::messageWithAChoiceShowsBothButtons()
{
    Shown<SvtaMessageDialog> now;
    now.dialog.setMessage(QStringLiteral("what"), QStringLiteral("yes"), QStringLiteral("no"),
                          false);
    QCOMPARE(textsOf(now.dialog),
             (Texts{{"labMessage", "what"}, {"btnConfirm", "yes"}, {"btnCancel", "no"}}));
    QVERIFY(find(now.dialog, "btnCancel")->isVisible());
    QCOMPARE(placeOf(now.dialog, "btnConfirm").topLeft(), QPoint(148, 96));
}

void MessageDialogsTest::forcedMessageShowsOneButtonInTheMiddle()
{
    Shown<SvtaMessageDialog> now;
    now.dialog.setMessage(QStringLiteral("what"), QStringLiteral("yes"), QStringLiteral("no"),
                          true);
    QVERIFY(!find(now.dialog, "btnCancel")->isVisible());
    QVERIFY(find(now.dialog, "btnConfirm")->isVisible());
    QCOMPARE(placeOf(now.dialog, "btnConfirm"), QRect(100, 96, 91, 41));
    QCOMPARE(textsOf(now.dialog),
             (Texts{{"labMessage", "what"}, {"btnConfirm", "yes"}, {"btnCancel", "no"}}));
}

void MessageDialogsTest::messageBecomesAChoiceAgain()
{
    Shown<SvtaMessageDialog> now;
    now.dialog.setMessage(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), true);
    now.dialog.setMessage(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), false);
    QVERIFY(find(now.dialog, "btnCancel")->isVisible());
    QCOMPARE(placeOf(now.dialog, "btnConfirm").topLeft(), QPoint(148, 96));
}

void MessageDialogsTest::messageShowsMarkupAsItIs()
{
    SvtaMessageDialog dialog;
    dialog.setMessage(QStringLiteral("<b>x</b>"), QStringLiteral("b"), QStringLiteral("c"), false);
    QCOMPARE(find<QLabel>(dialog, "labMessage")->textFormat(), Qt::PlainText);
    QCOMPARE(find<QLabel>(dialog, "labMessage")->text(), QStringLiteral("<b>x</b>"));
}

void MessageDialogsTest::laterIsSignalledAndLeavesTheMessageOpen()
{
    Shown<SvtaMessageDialog> now;
    QSignalSpy cancelled(&now.dialog, &SvtaMessageDialog::sigDownloadFailedCancel);
    QSignalSpy retried(&now.dialog, &SvtaMessageDialog::sigRetry);
    click(now.dialog, "btnCancel");
    QCOMPARE(cancelled.count(), 1);
    QCOMPARE(retried.count(), 0);
    QVERIFY(now.dialog.isVisible());
}

void MessageDialogsTest::retryIsSignalledAndLeavesTheMessageOpen()
{
    Shown<SvtaMessageDialog> now;
    QSignalSpy cancelled(&now.dialog, &SvtaMessageDialog::sigDownloadFailedCancel);
    QSignalSpy retried(&now.dialog, &SvtaMessageDialog::sigRetry);
    click(now.dialog, "btnConfirm");
    QCOMPARE(cancelled.count(), 0);
    QCOMPARE(retried.count(), 1);
    QVERIFY(now.dialog.isVisible());
}

void MessageDialogsTest::stopUpdateHasItsTexts()
{
    const SvtaForceUpdateSecondDialog dialog;
    QCOMPARE(textsOf(dialog), (Texts{{"labMessage", "停止更新"},
                                     {"label", "停止更新将退出应用，是否确认退出？"},
                                     {"btnCancel", "取消"},
                                     {"btnConfirm", "确定"}}));
}

void MessageDialogsTest::stopUpdateHasItsPlaces()
{
    const SvtaForceUpdateSecondDialog dialog;
    QCOMPARE(dialog.size(), QSize(280, 176));
    QCOMPARE(placeOf(dialog, "bgWidget"), QRect(0, 0, 280, 176));
    QCOMPARE(placeOf(dialog, "labMessage"), QRect(24, 32, 232, 20));
    QCOMPARE(placeOf(dialog, "label"), QRect(24, 68, 232, 20));
    QCOMPARE(placeOf(dialog, "btnCancel"), QRect(52, 112, 80, 32));
    QCOMPARE(placeOf(dialog, "btnConfirm"), QRect(148, 112, 80, 32));
    QCOMPARE(find<QLabel>(dialog, "labMessage")->alignment(), Qt::AlignCenter);
    QCOMPARE(find<QLabel>(dialog, "label")->alignment(), Qt::AlignCenter);
    QVERIFY(find(dialog, "bgWidget")->styleSheet().contains(QLatin1String("#C5C6C9")));
    QVERIFY(find(dialog, "btnConfirm")->styleSheet().contains(QLatin1String("#004DA6")));
}

void MessageDialogsTest::cancellingStopUpdateOnlyHidesIt()
{
    Shown<SvtaForceUpdateSecondDialog> now;
    QSignalSpy closed(&now.dialog, &SvtaForceUpdateSecondDialog::sigCloseApp);
    click(now.dialog, "btnCancel");
    QVERIFY(!now.dialog.isVisible());
    QCOMPARE(closed.count(), 0);
}

void MessageDialogsTest::confirmingStopUpdateIsSignalled()
{
    Shown<SvtaForceUpdateSecondDialog> now;
    QSignalSpy closed(&now.dialog, &SvtaForceUpdateSecondDialog::sigCloseApp);
    click(now.dialog, "btnConfirm");
    QCOMPARE(closed.count(), 1);
    QVERIFY(now.dialog.isVisible());
}

void MessageDialogsTest::notSavedHasItsTexts()
{
    QCOMPARE(textsOf(SvtaParamNotSaveDialog()), (Texts{{"labTitle", "Notice"},
                                                       {"labMessage", "Settings unsaved. Exit?"},
                                                       {"btnCancel", "Exit"},
                                                       {"btnConfirm", "Save and Exit"}}));
}

void MessageDialogsTest::notSavedSignalsItsAnswersAndStaysOpen()
{
    Shown<SvtaParamNotSaveDialog> now;
    QSignalSpy left(&now.dialog, &SvtaParamNotSaveDialog::sigExit);
    QSignalSpy saved(&now.dialog, &SvtaParamNotSaveDialog::sigSaveAndExit);
    click(now.dialog, "btnCancel");
    QCOMPARE(left.count(), 1);
    QCOMPARE(saved.count(), 0);
    click(now.dialog, "btnConfirm");
    QCOMPARE(left.count(), 1);
    QCOMPARE(saved.count(), 1);
    QVERIFY(now.dialog.isVisible());
}

void MessageDialogsTest::closingNotSavedHidesIt()
{
    Shown<SvtaParamNotSaveDialog> now;
    QSignalSpy left(&now.dialog, &SvtaParamNotSaveDialog::sigExit);
    QSignalSpy saved(&now.dialog, &SvtaParamNotSaveDialog::sigSaveAndExit);
    click(now.dialog, "btnClose");
    QVERIFY(!now.dialog.isVisible());
    QCOMPARE(left.count() + saved.count(), 0);
}

void MessageDialogsTest::resetHasItsTexts()
{
    QCOMPARE(textsOf(SvtaParamResetDialog()), (Texts{{"labMessage", "Reset parameters?"},
                                                     {"btnCancel", "Cancel"},
                                                     {"btnConfirm", "Confirm"}}));
}

void MessageDialogsTest::resetSignalsItsAnswersAndStaysOpen()
{
    checkConfirmAndCancel<SvtaParamResetDialog>();
}

void MessageDialogsTest::saveHasItsTexts()
{
    QCOMPARE(textsOf(SvtaParamSaveDialog()), (Texts{{"labMessage", "Save the settings？"},
                                                    {"btnCancel", "Cancel"},
                                                    {"btnConfirm", "Confirm"}}));
}

void MessageDialogsTest::saveSignalsItsAnswersAndStaysOpen()
{
    checkConfirmAndCancel<SvtaParamSaveDialog>();
}

void MessageDialogsTest::centreTipHasItsTexts()
{
    QCOMPARE(textsOf(SvtaCenterTipDialog()),
             (Texts{{"labTitle", "人物居中"},
                    {"labMessage",
                     "视角内人物位置发生变化时，相机将自动调节视角，保证人物始终处于视图中心位置"},
                    {"btnConfirm", "Got it"}}));
}

void MessageDialogsTest::centreTipIsHiddenByItsButton()
{
    Shown<SvtaCenterTipDialog> now;
    click(now.dialog, "btnConfirm");
    QVERIFY(!now.dialog.isVisible());
}

QTEST_MAIN(MessageDialogsTest)
#include "MessageDialogsTest.moc"
