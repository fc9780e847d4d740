#include "LoadingDialog.h"
#include "LogCapture.h"
#include "MaskForm.h"
#include "OnScreen.h"
#include "Pointer.h"
#include "QtSingleApplication.h"
#include "ShownHome.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"
#include "SvtaMoreWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaSupportedProductDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "TransPrewBtn.h"
#include "WindowManager.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <QJsonObject>
#include <QProcess>
#include <QPushButton>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

/// Shows a dialog and returns it.
using Open = std::function<QDialog*(ShownHome&)>;
/// Brings the minimised window back.
using Restore = std::function<void(const QWidget&)>;

struct Case
{
    const char* name;
    Open open;
    const char* closingButton; ///< null when the user cannot close the dialog
};

/// With the pointer, where the dialog really is.
void click(const QDialog& dialog, const char* button)
{
    const auto* widget = dialog.findChild<QPushButton*>(QLatin1String(button));
    Pointer::clickAt(OnScreen::placeOf(dialog).topLeft() +
                     widget->mapTo(&dialog, widget->rect().center()));
}

/// A program that is started while this one runs; it ends at once.
void startAgain(const QWidget&)
{
    QProcess second;
    QSignalSpy ended(&second, qOverload<int, QProcess::ExitStatus>(&QProcess::finished));
    second.start(QStringLiteral(MARVIK_PROGRAM), QStringList());
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, 20000);
    QCOMPARE(second.exitCode(), 0);
}

template <typename Dialog>
Open onSettings(void (SorvantaHome::*show)())
{
    return [show](ShownHome& home) -> QDialog* {
        if (!home.openSettings())
            return nullptr;
        (home.window().*show)();
        return home.find<Dialog>();
    };
}

QDialog* openNotSaved(ShownHome& home)
{
    if (!home.openSettings())
        return nullptr;
    home.window().slotCameraBrightValueChanged(101);
    home.click("backBtn");
    return home.find<SvtaParamNotSaveDialog>();
}

QDialog* openProducts(ShownHome& home)
{
    home.window().slotShowSupportedProduct();
    return home.find<SvtaSupportedProductDialog>();
}

QDialog* openOffer(ShownHome& home)
{
    home.window().slotSetUpdateData({});
    return home.find<SvtaVersionUpdateDialog>();
}

QDialog* openFailure(ShownHome& home)
{
    openOffer(home);
    home.window().slotDownloadFailed();
    return home.find<SvtaMessageDialog>();
}

QDialog* openQuitQuestion(ShownHome& home)
{
    home.window().slotForceUpdate({});
    const auto* offer = home.find<SvtaVersionUpdateDialog>();
    if (!QTest::qWaitFor([offer] { return offer->isActiveWindow(); }))
        return nullptr;
    home.window().slotShowCloseAppDialog();
    return home.find<SvtaForceUpdateSecondDialog>();
}

QDialog* openInstallation(ShownHome& home)
{
    auto* mask = home.window().findChild<MaskForm*>({}, Qt::FindDirectChildrenOnly);
    mask->showUnder(home.find<LoadingDialog>());
    return home.find<LoadingDialog>();
}

QList<Case> cases()
{
    using Home = SorvantaHome;
    return {
        {"save", onSettings<SvtaParamSaveDialog>(&Home::slotShowParamSaveDialog), "btnCancel"},
        {"reset", onSettings<SvtaParamResetDialog>(&Home::slotShowParamResetDialog), "btnCancel"},
        {"help", onSettings<SvtaCenterTipDialog>(&Home::slotShowCenterTipDialog), "btnConfirm"},
        {"not saved", openNotSaved, "btnClose"},
        {"products", openProducts, "btnClose"},
        {"offer", openOffer, "btnPauseUpdate"},
        {"failure", openFailure, "btnCancel"},
        {"quit question", openQuitQuestion, "btnCancel"},
        {"installation", openInstallation, nullptr}};
}

} // namespace

Q_DECLARE_METATYPE(Open)
Q_DECLARE_METATYPE(Restore)

/// Dialogs of a window that is minimised and restored past the program.
class MinimizedDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void comesBackWithItsWindow_data();
    void comesBackWithItsWindow();
    void dialogThatIsShownMeanwhileBringsTheWindowBack();

private:
    [[nodiscard]] bool isUsable(const QDialog& dialog) const;

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void MinimizedDialogTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    QVERIFY(m_home->passStart());
    auto* application = qobject_cast<QtSingleApplication*>(qApp);
    application->setActivationWindow(&m_home->window(), true);
    connect(application, &QtSingleApplication::messageReceived, &m_home->window(),
            &SorvantaHome::slotActivateWindow);
}

void MinimizedDialogTest::cleanup()
{
    qobject_cast<QtSingleApplication*>(qApp)->setActivationWindow(nullptr);
    m_home.reset();
    m_log.reset();
}

void MinimizedDialogTest::comesBackWithItsWindow_data()
{
    QTest::addColumn<Open>("open");
    QTest::addColumn<QByteArray>("closingButton");
    QTest::addColumn<Restore>("restore");
    for (const Case& each : cases()) {
        QTest::addRow("%s, task bar", each.name)
            << each.open << QByteArray(each.closingButton) << Restore(WindowManager::activate);
        QTest::addRow("%s, mapped", each.name)
            << each.open << QByteArray(each.closingButton) << Restore(WindowManager::map);
        QTest::addRow("%s, second start", each.name)
            << each.open << QByteArray(each.closingButton) << Restore(startAgain);
    }
}

/// Whether the user sees @p dialog over the window and its masks, and can use it.
bool MinimizedDialogTest::isUsable(const QDialog& dialog) const
{
    const SorvantaHome& window = m_home->window();
    if (!dialog.isActiveWindow() || !OnScreen::isShown(dialog) || !OnScreen::isShown(window))
        return false;
    const QList<WId> order = OnScreen::stackingOrder();
    const auto level = [&order](const QWidget& widget) {
        return order.indexOf(widget.effectiveWinId());
    };
    // The overlays of the preview belong to the window, and the mask darkens them too.
    const auto others = window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const auto isUnder = [&](const QWidget* other) {
        return other == &dialog || !other->isWindow() || !other->isVisible() ||
               level(*other) < level(dialog);
    };
    const auto* mask = window.findChild<MaskForm*>({}, Qt::FindDirectChildrenOnly);
    if (level(*mask) < level(window) || !std::all_of(others.begin(), others.end(), isUnder))
        return false;
    const auto* overlay = m_home->find<TransPrewBtn>();
    return m_home->page() != Pages::SettingPage ||
           (OnScreen::isShown(*overlay) && level(*overlay) > level(window) &&
            level(*overlay) < level(*mask));
}

void MinimizedDialogTest::comesBackWithItsWindow()
{
    QFETCH(const Open, open);
    QFETCH(const QByteArray, closingButton);
    QFETCH(const Restore, restore);
    SorvantaHome& window = m_home->window();
    QDialog* dialog = open(*m_home);
    QVERIFY(dialog);
    QTRY_VERIFY(isUsable(*dialog));
    const QRect place = OnScreen::placeOf(*dialog);

    WindowManager::minimize(window);
    QTRY_VERIFY(window.isMinimized());
    QTRY_VERIFY(!OnScreen::isShown(*dialog));
    restore(window);
    QTRY_VERIFY(isUsable(*dialog));
    QCOMPARE(OnScreen::placeOf(*dialog), place);

    if (closingButton.isEmpty())
        dialog->hide();
    else
        click(*dialog, closingButton);
    QTRY_VERIFY(!dialog->isVisible());
    if (const auto* below = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
        QTRY_VERIFY(isUsable(*below));
        click(*below, "btnClose");
        QTRY_VERIFY(dialog->isVisible());
        return;
    }
    QTRY_VERIFY(window.isActiveWindow());
    Pointer::clickAt(Pointer::middleOf(*m_home->find("moreBtn")));
    QTRY_VERIFY(m_home->find<SvtaMoreWidget>()->isVisible());
}

void MinimizedDialogTest::dialogThatIsShownMeanwhileBringsTheWindowBack()
{
    const SorvantaHome& window = m_home->window();
    const QDialog* offer = openOffer(*m_home);
    QTRY_VERIFY(isUsable(*offer));
    WindowManager::minimize(window);
    QTRY_VERIFY(window.isMinimized());
    QTRY_VERIFY(!OnScreen::isShown(*offer));

    m_home->window().slotDownloadFailed();
    const auto* failure = m_home->find<SvtaMessageDialog>();
    QTRY_VERIFY(isUsable(*failure));
    QVERIFY(!window.isMinimized());
    click(*failure, "btnCancel");
    QTRY_VERIFY(!failure->isVisible());
    QTRY_VERIFY(window.isActiveWindow());
}

int main(int argc, char** argv)
{
    QtSingleApplication application(argc, argv, true);
    if (application.isRunning())
        return 1;
    MinimizedDialogTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "MinimizedDialogTest.moc"
