#include "ShownHome.h"
#include "SvtaSupportedProductDialog.h"
#include "TransPrewBtn.h"

#include <memory>
#include <qt_windows.h>
#include <QtTest>

namespace {

RECT placeOf(const QWidget& window)
{
    RECT place{};
    ::GetWindowRect(reinterpret_cast<HWND>(window.winId()), &place);
    return place;
}

QSize sizeOf(const RECT& place)
{
    return {int(place.right - place.left), int(place.bottom - place.top)};
}

/// The system's message for a monitor of another scale, with the place that it suggests.
void sendDpi(const QWidget& window, int dpi)
{
    const RECT before = placeOf(window);
    RECT suggested = before;
    suggested.left += 30;
    suggested.right = suggested.left + ::MulDiv(sizeOf(before).width(), dpi, 96);
    suggested.bottom = suggested.top + ::MulDiv(sizeOf(before).height(), dpi, 96);
    ::SendMessageW(reinterpret_cast<HWND>(window.winId()), WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                   reinterpret_cast<LPARAM>(&suggested));
}

} // namespace

/// The windows at a monitor of another scale, while the program does not scale.
class DpiChangeTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowKeepsItsPixels_data();
    void windowKeepsItsPixels();
    void dialogKeepsItsPixels();
    void overlayKeepsItsPixels();
    void windowFollowsTheSystemWhenTheProgramScales();

private:
    std::unique_ptr<ShownHome> m_home;
};

void DpiChangeTest::init()
{
    QVERIFY(!QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    QVERIFY(m_home->passStart());
}

void DpiChangeTest::cleanup()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
    m_home.reset();
}

void DpiChangeTest::windowKeepsItsPixels_data()
{
    QTest::addColumn<QVector<int>>("dpis");
    QTest::newRow("larger") << QVector<int>{144};
    QTest::newRow("smaller") << QVector<int>{72};
    QTest::newRow("there and back") << QVector<int>{192, 96, 120, 96};
}

void DpiChangeTest::windowKeepsItsPixels()
{
    QFETCH(QVector<int>, dpis);
    const SorvantaHome& window = m_home->window();
    const QRect before = window.geometry();
    for (const int dpi : dpis) {
        sendDpi(window, dpi);
        QCoreApplication::processEvents();
        QCOMPARE(sizeOf(placeOf(window)), QSize(360, 680));
        QCOMPARE(window.geometry(), before);
    }
}

void DpiChangeTest::dialogKeepsItsPixels()
{
    m_home->window().slotShowSupportedProduct();
    const auto* dialog = m_home->find<SvtaSupportedProductDialog>();
    QVERIFY(dialog->isVisible());
    const QSize before = dialog->size();
    sendDpi(*dialog, 144);
    QCoreApplication::processEvents();
    QCOMPARE(sizeOf(placeOf(*dialog)), before);
    QCOMPARE(dialog->size(), before);
}

void DpiChangeTest::overlayKeepsItsPixels()
{
    QVERIFY(m_home->openSettings());
    const auto* button = m_home->find<TransPrewBtn>();
    QVERIFY(button->isVisible());
    sendDpi(*button, 144);
    QCoreApplication::processEvents();
    QCOMPARE(sizeOf(placeOf(*button)), QSize(24, 24));
}

/// Its widgets get their size from Qt, which divides by the scale.
void DpiChangeTest::windowFollowsTheSystemWhenTheProgramScales()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    sendDpi(m_home->window(), 144);
    QCOMPARE(sizeOf(placeOf(m_home->window())), QSize(540, 1020));
}

QTEST_MAIN(DpiChangeTest)
#include "DpiChangeTest.moc"
