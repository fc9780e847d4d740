#include "CameraDesk.h"

#include "DeviceManager.h"
#include "ParamSettingsPage.h"
#include "PendingTimers.h"
#include "SliderScale.h"
#include "SvtaDeviceWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaSwitchButton.h"
#include "ToastDialog.h"
#include "TransPrewBtn.h"

#include <array>
#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QRadioButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTextCodec>
#include <QTimer>
#include <QtTest>
#include <QWheelEvent>

namespace {

// Not in the middle of the screen, where the pointer is.
constexpr QPoint kPlace(40, 100);
constexpr int kStartAnimationMs = 2800;
constexpr int kBackLockMs = 1000;
constexpr int kIntelligentLockMs = 1000;
/// Delays of the steps that the program defers: framing, framing off and preview, leaving.
constexpr std::array<int, 3> kPutOffMs{10, 100, 20};
constexpr int kTimeoutMs = 10000;
constexpr int kLayoutMs = 1000;

const std::array<const char*, 4> kSliders{"brightSlider", "contrastSlider", "saturationSlider",
                                          "sharpnessSlider"};

} // namespace

CameraDesk::CameraDesk()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("utf-8"));
    m_window.setWindowTitle(QStringLiteral("MarvikTools"));
    m_window.move(kPlace);
    DeviceManager::instance().start();
}

CameraDesk::~CameraDesk()
{
    DeviceManager::instance().stop();
    PendingTimers::dropAll();
}

bool CameraDesk::start()
{
    m_window.show();
    m_window.activateWindow();
    return QTest::qWaitForWindowActive(&m_window) && PendingTimers::fire(kStartAnimationMs) &&
           isOnPage(SvtaPagesView::HomePage);
}

int CameraDesk::page() const
{
    return find<QStackedWidget>("homeStackedWidget")->currentIndex();
}

bool CameraDesk::isOnPage(SvtaPagesView::ViewPageEnum page) const
{
    return this->page() == page;
}

int CameraDesk::cardCount() const
{
    return find<QListWidget>("deviceList")->count();
}

bool CameraDesk::waitForCards(int count)
{
    return QTest::qWaitFor([&] { return cardCount() == count; }, kTimeoutMs) && settle();
}

bool CameraDesk::replug(PluggedCamera& camera)
{
    const int cards = cardCount();
    camera.unplug();
    if (!waitForCards(cards - 1))
        return false;
    camera.plug();
    return waitForCards(cards);
}

SvtaDeviceWidget* CameraDesk::card(PluggedCamera& camera) const
{
    // Through the list: the window also has cards that will be deleted later.
    const auto* list = find<QListWidget>("deviceList");
    const QString path = camera.hidPath();
    for (int row = 0; row < list->count(); ++row) {
        auto* each = qobject_cast<SvtaDeviceWidget*>(list->itemWidget(list->item(row)));
        if (each && each->data().hidPath == path)
            return each;
    }
    return nullptr;
}

bool CameraDesk::clickCard(PluggedCamera& camera)
{
    SvtaDeviceWidget* widget = card(camera);
    if (!widget) {
        qWarning("the camera is not in the list");
        return false;
    }
    auto* list = find<QListWidget>("deviceList");
    for (int row = 0; row < list->count(); ++row) {
        if (list->itemWidget(list->item(row)) == widget)
            list->scrollToItem(list->item(row), QAbstractItemView::PositionAtTop);
    }
    const QPoint position(widget->width() / 2, 20);
    return bring(widget, position) && clickOn(widget, position);
}

bool CameraDesk::open(PluggedCamera& camera)
{
    return clickCard(camera) && isOnPage(SvtaPagesView::SettingPage) && settle();
}

/// Shows the tab, scrolls to the widget and waits until the position on it can be clicked, because
/// the page may be changing its layout.
bool CameraDesk::bring(QWidget* widget, const QPoint& position)
{
    if (find("featureSettingPage")->isAncestorOf(widget) && !widget->isVisible())
        QTest::mouseClick(find("btnFeatureSetting"), Qt::LeftButton);
    else if (find("cameraSettingPage")->isAncestorOf(widget) && !widget->isVisible())
        QTest::mouseClick(find("btnCameraSetting"), Qt::LeftButton);
    const QList<QScrollArea*> areas = m_window.findChildren<QScrollArea*>();
    const bool reachable = QTest::qWaitFor(
        [&] {
            for (QScrollArea* area : areas) {
                if (area->widget() && area->widget()->isAncestorOf(widget))
                    area->ensureWidgetVisible(widget);
            }
            return isReachable(widget, position);
        },
        kLayoutMs);
    if (!reachable)
        qWarning("%s cannot be reached", qPrintable(widget->objectName()));
    return reachable;
}

bool CameraDesk::isReachable(QWidget* widget, const QPoint& position) const
{
    const QWidget* modal = QApplication::activeModalWidget();
    const QWidget* window = widget->window();
    if (modal && window != modal)
        return false;
    const QWidget* hit = window->childAt(widget->mapTo(window, position));
    return widget->isVisible() && widget->isEnabled() && hit &&
           (hit == widget || widget->isAncestorOf(hit));
}

bool CameraDesk::clickOn(QWidget* widget, const QPoint& position, Qt::MouseButton button)
{
    if (!isReachable(widget, position)) {
        qWarning("%s cannot be clicked", qPrintable(widget->objectName()));
        return false;
    }
    QTest::mouseClick(widget, button, Qt::NoModifier, position);
    return true;
}

bool CameraDesk::click(const char* name, Qt::MouseButton button)
{
    auto* widget = find(name);
    // A radio button takes clicks on its mark and its text only.
    const bool isRadio = qobject_cast<QRadioButton*>(widget) != nullptr;
    const QPoint middle = widget->rect().center();
    const QPoint position = isRadio ? QPoint(8, middle.y()) : middle;
    return bring(widget, position) && clickOn(widget, position, button);
}

bool CameraDesk::clickSlider(const char* name, int x)
{
    auto* slider = find<QSlider>(name);
    const QPoint position(x, slider->height() / 2);
    return bring(slider, position) && clickOn(slider, position);
}

namespace {

/// A position at which the slider has this value, -1 when there is none.
int placeOf(const QSlider& slider, int value)
{
    // The middle of the pixels that belong to the value.
    for (int x = SliderScale::kHandleWidth / 2; x < slider.width(); ++x) {
        if (SliderScale::valueAt(x, slider.width(), slider.minimum(), slider.maximum()) == value)
            return x;
    }
    return -1;
}

} // namespace

bool CameraDesk::setSlider(const char* name, int value)
{
    return clickSlider(name, placeOf(*find<QSlider>(name), value));
}

bool CameraDesk::dragSlider(const char* name, int value)
{
    auto* slider = find<QSlider>(name);
    const int y = slider->height() / 2;
    const QPoint from(placeOf(*slider, slider->value()), y);
    const QPoint to(placeOf(*slider, value), y);
    if (from.x() < 0 || to.x() < 0 || !bring(slider, from))
        return false;
    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, from);
    // QTest's moves have no button pressed; a user's drag has.
    for (const QPoint& position : {(from + to) / 2, to}) {
        QMouseEvent move(QEvent::MouseMove, position, slider->mapToGlobal(position), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(slider, &move);
    }
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, to);
    return true;
}

bool CameraDesk::turnWheel(const char* name, int notches)
{
    auto* widget = find(name);
    const QPoint position = widget->rect().center();
    if (!bring(widget, position))
        return false;
    QWheelEvent event(position, widget->mapToGlobal(position), {}, {0, 120 * notches}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
    return true;
}

bool CameraDesk::pressKey(const char* name, Qt::Key key)
{
    auto* widget = find(name);
    if (!bring(widget, widget->rect().center()))
        return false;
    widget->setFocus(Qt::TabFocusReason);
    QTest::keyClick(widget, key);
    return true;
}

bool CameraDesk::clickPreview()
{
    const auto* button = find<TransPrewBtn>("TransPrewBtn");
    auto* label = button->findChild<QLabel*>(QStringLiteral("label"));
    return button->isVisible() && clickOn(label, label->rect().center());
}

bool CameraDesk::settle()
{
    const auto isPending = [](int milliseconds) { return PendingTimers::count(milliseconds) > 0; };
    const bool settled = QTest::qWaitFor(
        [&] { return std::none_of(kPutOffMs.begin(), kPutOffMs.end(), isPending); }, kTimeoutMs);
    if (!settled)
        qWarning("the program does not come to rest");
    return settled;
}

void CameraDesk::unlockIntelligent() const
{
    for (QTimer* timer : find<ParamSettingsPage>()->findChildren<QTimer*>()) {
        if (!timer->isActive() || timer->interval() != kIntelligentLockMs)
            continue;
        QTimerEvent event(timer->timerId());
        QApplication::sendEvent(timer, &event);
    }
}

bool CameraDesk::switchIntelligent()
{
    unlockIntelligent();
    return choose("btnIntelligent");
}

bool CameraDesk::isChecked(const char* name) const
{
    if (const auto* button = qobject_cast<SvtaSwitchButton*>(find(name)))
        return button->isChecked();
    return find<QAbstractButton>(name)->isChecked();
}

int CameraDesk::sliderValue(const char* name) const
{
    return find<QSlider>(name)->value();
}

QString CameraDesk::text(const char* name) const
{
    return find<QLabel>(name)->text();
}

QList<int> CameraDesk::sliderValues() const
{
    QList<int> values;
    for (const char* slider : kSliders)
        values << sliderValue(slider);
    return values;
}

void CameraDesk::unlockBack()
{
    PendingTimers::fire(kBackLockMs);
}

bool CameraDesk::back()
{
    unlockBack();
    return click("backBtn") && settle();
}

bool CameraDesk::clickIn(QDialog* dialog, const char* button)
{
    if (!QTest::qWaitForWindowExposed(dialog)) {
        qWarning("%s is not up", dialog->metaObject()->className());
        return false;
    }
    auto* widget = dialog->findChild<QAbstractButton*>(QLatin1String(button));
    return widget && clickOn(widget, widget->rect().center()) && settle();
}

bool CameraDesk::save()
{
    return click("btnPramaSava") && answer<SvtaParamSaveDialog>("btnConfirm");
}

bool CameraDesk::reset()
{
    return click("btnPramaReset") && answer<SvtaParamResetDialog>("btnConfirm");
}

bool CameraDesk::discard()
{
    return back() && answer<SvtaParamNotSaveDialog>("btnCancel");
}

QString CameraDesk::toast() const
{
    for (const ToastDialog* toast : m_window.findChildren<ToastDialog*>()) {
        if (toast->isVisible())
            return toast->findChild<QLabel*>(QStringLiteral("ContentLab"))->text();
    }
    return {};
}

int CameraDesk::visibleDialogs() const
{
    int count = 0;
    for (const QDialog* dialog : m_window.findChildren<QDialog*>()) {
        if (dialog->isVisible() && !qobject_cast<const ToastDialog*>(dialog))
            ++count;
    }
    return count;
}

QStringList requestsTo(PluggedCamera& camera)
{
    QStringList texts;
    for (const auto& entry : camera.requests()) {
        QString text = QString::number(entry.command, 16).toUpper();
        for (const std::uint8_t byte : entry.payload)
            text += QLatin1Char('=') + QString::number(byte);
        texts << text;
    }
    return texts;
}

QStringList writesTo(PluggedCamera& camera)
{
    return requestsTo(camera).filter(QStringLiteral("="));
}

QList<int> pictureOf(PluggedCamera& camera)
{
    return {camera.value("brightness"), camera.value("contrast"), camera.value("saturation"),
            camera.value("sharpness")};
}
