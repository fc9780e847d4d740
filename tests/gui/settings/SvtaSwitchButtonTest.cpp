#include "SvtaSwitchButton.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QtTest>
#include <QVBoxLayout>

class SvtaSwitchButtonTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void preferredSizeFollowsFromTheKnob();
    void cursorIsAPointingHand();
    void paintsTheTrackInTheColourOfTheState();
    void knobRestsFourPixelsFromTheEnd();
    void trackHasRoundEnds();
    void clickTogglesOnceAndSignalsBeforeTheKnobMoves();
    void knobSlidesInTwoTicks();
    void knobSlidesBackInTwoTicks();
    void wideSwitchTakesMoreTicks();
    void clickDuringTheSlideReversesIt();
    void slideEndsByItself();
    void settingTheStateMovesTheKnobAtOnceAndSilently();
    void receiverMaySetAnotherStateAtOnce();
    void resizePutsTheKnobToTheOffPositionEvenWhenOn();
    void pressAloneDoesNotToggle();
    void pressIsAcceptedForTheLeftButtonOnly();
    void rightButtonDoesNotToggleAndIsIgnored();
    void disabledSwitchTakesNoMouse();
    void disabledSwitchTakesNoKey();
    void spaceTogglesLikeAClick();
    void heldSpaceTogglesOnce();
    void otherKeysDoNotToggle();
    void focusRingIsForTheKeyboardOnly();
    void assistiveProgramsSeeACheckBox();
    void assistiveProgramsCanToggle();

private:
    QImage image() { return m_button->grab().toImage(); }
    double knob();
    void tick() { QMetaObject::invokeMethod(m_button, "onTimeout", Qt::DirectConnection); }
    bool send(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons);
    void click();

    QWidget* m_window = nullptr;
    QLineEdit* m_other = nullptr;
    SvtaSwitchButton* m_button = nullptr;
};

void SvtaSwitchButtonTest::init()
{
    m_window = new QWidget;
    auto* layout = new QVBoxLayout(m_window);
    m_other = new QLineEdit(m_window);
    m_button = new SvtaSwitchButton(m_window);
    m_button->setFixedSize(36, 20);
    layout->addWidget(m_other);
    layout->addWidget(m_button);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    m_other->setFocus();
}

void SvtaSwitchButtonTest::cleanup()
{
    delete m_window;
}

/// Centre of the white run in the middle row.
double SvtaSwitchButtonTest::knob()
{
    const QImage picture = image();
    int first = -1;
    int last = -1;
    for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, picture.height() / 2) == QColor(Qt::white)) {
            first = first < 0 ? x : first;
            last = x;
        }
    }
    return (first + last + 1) / 2.0;
}

/// Whether the event was accepted. Sent directly, so that no timer event comes in between.
bool SvtaSwitchButtonTest::send(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    // A parent that accepts every event would hide whether this widget accepted it.
    QMouseEvent event(type, QPointF(5, 5), button, buttons, Qt::NoModifier);
    event.setAccepted(false);
    static_cast<QObject*>(m_button)->event(&event);
    return event.isAccepted();
}

void SvtaSwitchButtonTest::click()
{
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
}

void SvtaSwitchButtonTest::preferredSizeFollowsFromTheKnob()
{
    QCOMPARE(m_button->sizeHint(), QSize(36, 20));
    QCOMPARE(m_button->minimumSizeHint(), QSize(36, 20));
}

void SvtaSwitchButtonTest::cursorIsAPointingHand()
{
    QCOMPARE(m_button->cursor().shape(), Qt::PointingHandCursor);
}

void SvtaSwitchButtonTest::paintsTheTrackInTheColourOfTheState()
{
    QCOMPARE(image().pixelColor(30, 10), QColor(0xDD, 0xDD, 0xDD));
    m_button->setChecked(true);
    QCOMPARE(image().pixelColor(6, 10), QColor(0x34, 0x76, 0xFF));
}

void SvtaSwitchButtonTest::knobRestsFourPixelsFromTheEnd()
{
    m_button->setChecked(false);
    QCOMPARE(knob(), 13.0);
    for (const int y : {2, 17})
        QCOMPARE(image().pixelColor(13, y), QColor(Qt::white));
    for (const int y : {0, 19})
        QCOMPARE(image().pixelColor(13, y), QColor(0xDD, 0xDD, 0xDD));
    m_button->setChecked(true);
    QCOMPARE(knob(), 23.0);
}

void SvtaSwitchButtonTest::trackHasRoundEnds()
{
    m_button->setChecked(true);
    const QImage picture = image();
    for (const QPoint corner : {QPoint(0, 0), QPoint(35, 0), QPoint(0, 19), QPoint(35, 19)})
        QVERIFY(picture.pixelColor(corner) != QColor(0x34, 0x76, 0xFF));
    QCOMPARE(picture.pixelColor(18, 0), QColor(0x34, 0x76, 0xFF));
}

void SvtaSwitchButtonTest::clickTogglesOnceAndSignalsBeforeTheKnobMoves()
{
    double seen = 0;
    bool state = false;
    connect(m_button, &SvtaSwitchButton::sigToggled, m_button, [&](bool on) {
        seen = knob();
        state = on && m_button->isChecked();
    });
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    QTest::mouseClick(m_button, Qt::LeftButton);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toBool(), true);
    QVERIFY(state);
    QCOMPARE(seen, 13.0);
}

void SvtaSwitchButtonTest::knobSlidesInTwoTicks()
{
    click();
    QCOMPARE(knob(), 13.0);
    tick();
    QCOMPARE(knob(), 19.0);
    tick();
    QCOMPARE(knob(), 23.0);
    QTest::qWait(30);
    QCOMPARE(knob(), 23.0);
}

void SvtaSwitchButtonTest::knobSlidesBackInTwoTicks()
{
    m_button->setChecked(true);
    click();
    tick();
    QCOMPARE(knob(), 17.0);
    tick();
    QCOMPARE(knob(), 13.0);
}

void SvtaSwitchButtonTest::wideSwitchTakesMoreTicks()
{
    m_button->setFixedSize(60, 20);
    QTRY_COMPARE(m_button->width(), 60);
    click();
    for (const double position : {19.0, 25.0, 31.0, 37.0, 43.0, 47.0}) {
        tick();
        QCOMPARE(knob(), position);
    }
}

void SvtaSwitchButtonTest::clickDuringTheSlideReversesIt()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    click();
    tick();
    QCOMPARE(knob(), 19.0);
    click();
    QCOMPARE(knob(), 19.0);
    tick();
    QCOMPARE(knob(), 13.0);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.last().first().toBool(), false);
}

void SvtaSwitchButtonTest::slideEndsByItself()
{
    QTest::mouseClick(m_button, Qt::LeftButton);
    QTRY_COMPARE(knob(), 23.0);
    QTest::mouseClick(m_button, Qt::LeftButton);
    QTRY_COMPARE(knob(), 13.0);
}

void SvtaSwitchButtonTest::settingTheStateMovesTheKnobAtOnceAndSilently()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    m_button->setChecked(true);
    QVERIFY(m_button->isChecked());
    QCOMPARE(knob(), 23.0);
    m_button->setChecked(false);
    QCOMPARE(knob(), 13.0);
    QCOMPARE(spy.count(), 0);
}

void SvtaSwitchButtonTest::receiverMaySetAnotherStateAtOnce()
{
    connect(m_button, &SvtaSwitchButton::sigToggled, m_button,
            [this] { m_button->setChecked(false); });
    QTest::mouseClick(m_button, Qt::LeftButton);
    QTest::qWait(30);
    QVERIFY(!m_button->isChecked());
    QCOMPARE(knob(), 13.0);
}

void SvtaSwitchButtonTest::resizePutsTheKnobToTheOffPositionEvenWhenOn()
{
    m_button->setChecked(true);
    m_button->setFixedSize(50, 20);
    QTRY_COMPARE(m_button->width(), 50);
    QCOMPARE(knob(), 13.0);
    QCOMPARE(image().pixelColor(40, 10), QColor(0x34, 0x76, 0xFF));
    m_button->setChecked(true);
    QCOMPARE(knob(), 37.0);
}

void SvtaSwitchButtonTest::pressAloneDoesNotToggle()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    QTest::mousePress(m_button, Qt::LeftButton);
    QVERIFY(!m_button->isChecked());
    QCOMPARE(spy.count(), 0);
    QTest::mouseRelease(m_button, Qt::LeftButton);
    QCOMPARE(spy.count(), 1);
}

void SvtaSwitchButtonTest::pressIsAcceptedForTheLeftButtonOnly()
{
    QVERIFY(send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton));
    QVERIFY(send(QEvent::MouseButtonPress, Qt::RightButton, Qt::LeftButton | Qt::RightButton));
    QVERIFY(!send(QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton));
}

void SvtaSwitchButtonTest::rightButtonDoesNotToggleAndIsIgnored()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    QTest::mouseClick(m_button, Qt::RightButton);
    QVERIFY(!send(QEvent::MouseButtonRelease, Qt::RightButton, Qt::NoButton));
    QCOMPARE(spy.count(), 0);
    QVERIFY(!m_button->isChecked());
}

void SvtaSwitchButtonTest::disabledSwitchTakesNoMouse()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    m_button->setEnabled(false);
    QTest::mouseClick(m_button, Qt::LeftButton);
    QVERIFY(!send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton));
    QVERIFY(!send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton));
    QCOMPARE(spy.count(), 0);
    QVERIFY(!m_button->isChecked());
}

void SvtaSwitchButtonTest::disabledSwitchTakesNoKey()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    m_button->setEnabled(false);
    QTest::keyClick(m_button, Qt::Key_Space);
    QCOMPARE(spy.count(), 0);
}

void SvtaSwitchButtonTest::spaceTogglesLikeAClick()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    QTest::keyClick(m_other, Qt::Key_Tab);
    QVERIFY(m_button->hasFocus());
    QTest::keyClick(m_button, Qt::Key_Space);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toBool(), true);
    QTRY_COMPARE(knob(), 23.0);
}

void SvtaSwitchButtonTest::heldSpaceTogglesOnce()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    m_button->setFocus(Qt::TabFocusReason);
    QTest::keyPress(m_button, Qt::Key_Space);
    for (int i = 0; i < 3; ++i) {
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "),
                         true);
        QApplication::sendEvent(m_button, &repeat);
    }
    QTest::keyRelease(m_button, Qt::Key_Space);
    QCOMPARE(spy.count(), 1);
}

void SvtaSwitchButtonTest::otherKeysDoNotToggle()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    m_button->setFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Right, Qt::Key_A, Qt::Key_Escape})
        QTest::keyClick(m_button, key);
    QCOMPARE(spy.count(), 0);
}

void SvtaSwitchButtonTest::focusRingIsForTheKeyboardOnly()
{
    const QImage plain = image();
    QTest::mouseClick(m_button, Qt::LeftButton);
    QTest::mouseClick(m_button, Qt::LeftButton);
    QTRY_COMPARE(knob(), 13.0);
    QVERIFY(!m_button->hasFocus());
    QCOMPARE(image(), plain);
    QTest::keyClick(m_other, Qt::Key_Tab);
    QVERIFY(m_button->hasFocus());
    QVERIFY(image() != plain);
    QCOMPARE(image().pixelColor(30, 10), plain.pixelColor(30, 10));
    QTest::keyClick(m_button, Qt::Key_Tab);
    QCOMPARE(image(), plain);
}

void SvtaSwitchButtonTest::assistiveProgramsSeeACheckBox()
{
    m_button->setAccessibleName(QStringLiteral("Mirror"));
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(m_button);
    QVERIFY(interface);
    QCOMPARE(interface->role(), QAccessible::CheckBox);
    QCOMPARE(interface->text(QAccessible::Name), QStringLiteral("Mirror"));
    QVERIFY(interface->state().checkable);
    QVERIFY(!interface->state().checked);
    m_button->setChecked(true);
    QVERIFY(interface->state().checked);
}

void SvtaSwitchButtonTest::assistiveProgramsCanToggle()
{
    const QSignalSpy spy(m_button, &SvtaSwitchButton::sigToggled);
    QAccessibleActionInterface* actions =
        QAccessible::queryAccessibleInterface(m_button)->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    actions->doAction(QAccessibleActionInterface::toggleAction());
    QCOMPARE(spy.count(), 1);
    m_button->setEnabled(false);
    QVERIFY(!actions->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    actions->doAction(QAccessibleActionInterface::toggleAction());
    QCOMPARE(spy.count(), 1);
}

QTEST_MAIN(SvtaSwitchButtonTest)
#include "SvtaSwitchButtonTest.moc"
