#include "ParamSettingsPage.h"
#include "RecordingCaptureGraph.h"
#include "ScriptedVideo.h"
#include "ShownHome.h"
#include "TransparentBtn.h"
#include "TransPrewBtn.h"

#include <memory>
#include <QApplication>
#include <QScreen>
#include <QtTest>
#include <QWindow>

namespace {

/// Qt reads the scale of a screen from this property, if QT_SCREEN_SCALE_FACTORS is set.
constexpr const char* kScaleProperty = "_q_scaleFactor";

QScreen* monitor()
{
    return QGuiApplication::primaryScreen();
}

/// The user sets another scale for the monitor. Windows are not touched.
void setScale(double scale)
{
    monitor()->setProperty(kScaleProperty, scale);
    emit monitor()->logicalDotsPerInchChanged(96 * scale);
}

/// The place on the screen, or in the main window, that a widget has in pixels, divided by the
/// scale.
QRect nativePlace(const QWidget* widget)
{
    QRect place = widget->windowHandle()->geometry();
    if (widget->isWindow())
        return place;
    for (const QWindow* parent = widget->windowHandle()->parent(); !parent->isTopLevel();
         parent = parent->parent())
        place.translate(parent->geometry().topLeft());
    return place;
}

} // namespace

/// The window while the scale of its monitor changes.
class ScaleChangeTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowHasItsSizeAgain_data();
    void windowHasItsSizeAgain();
    void previewAreaHasItsPlaceAgain_data();
    void previewAreaHasItsPlaceAgain();
    void pictureFitsThePreviewAreaAgain();
    void stoppedPreviewIsNotPlaced();
    void resizedPreviewAreaFitsThePicture();
    void overlaysHaveTheirPlacesAgain_data();
    void overlaysHaveTheirPlacesAgain();

private:
    static void addScales();
    [[nodiscard]] QWidget* previewArea() const
    {
        return m_home->find<ParamSettingsPage>()->previewArea();
    }
    [[nodiscard]] QStringList fits() const
    {
        return m_home->cameras().video().script()->steps.filter(QStringLiteral("fitVideoWindow"));
    }

    std::unique_ptr<ShownHome> m_home;
};

void ScaleChangeTest::init()
{
    monitor()->setProperty(kScaleProperty, 1.0);
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    QVERIFY(m_home->passStart());
    QVERIFY(m_home->openSettings());
    m_home->cameras().video().script()->steps.clear();
}

void ScaleChangeTest::cleanup()
{
    m_home.reset();
}

void ScaleChangeTest::addScales()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("125 %") << 1.25;
    QTest::newRow("150 %") << 1.5;
    QTest::newRow("200 %") << 2.0;
}

void ScaleChangeTest::windowHasItsSizeAgain_data()
{
    addScales();
}

void ScaleChangeTest::windowHasItsSizeAgain()
{
    QFETCH(double, scale);
    const QWidget& window = m_home->window();
    setScale(scale);
    QVERIFY(nativePlace(&window).size() != QSize(360, 680));
    QTRY_COMPARE(nativePlace(&window).size(), QSize(360, 680));
    QCOMPARE(window.size(), QSize(360, 680));
    setScale(1);
    QTRY_COMPARE(nativePlace(&window).size(), QSize(360, 680));
    QCOMPARE(window.size(), QSize(360, 680));
}

void ScaleChangeTest::previewAreaHasItsPlaceAgain_data()
{
    addScales();
}

/// A native window in the window, which nothing else places.
void ScaleChangeTest::previewAreaHasItsPlaceAgain()
{
    QFETCH(double, scale);
    const QRect before = nativePlace(previewArea());
    QVERIFY(!before.topLeft().isNull());
    setScale(scale);
    QVERIFY(nativePlace(previewArea()).size() != before.size());
    QTRY_COMPARE(nativePlace(previewArea()).size(), before.size());
    // Each window between the two may lose half a pixel where the scale makes no whole number.
    QVERIFY((nativePlace(previewArea()).topLeft() - before.topLeft()).manhattanLength() <= 2);
    QCOMPARE(previewArea()->size(), before.size());
}

void ScaleChangeTest::pictureFitsThePreviewAreaAgain()
{
    setScale(1.5);
    QTRY_COMPARE(fits(),
                 QStringList(QStringLiteral("fitVideoWindow(%1)").arg(previewArea()->winId())));
}

void ScaleChangeTest::stoppedPreviewIsNotPlaced()
{
    m_home->window().slotHandleCapture();
    const QSize before = nativePlace(previewArea()).size();
    setScale(1.5);
    QTRY_COMPARE(nativePlace(previewArea()).size(), before);
    QCOMPARE(fits(), QStringList());
}

void ScaleChangeTest::resizedPreviewAreaFitsThePicture()
{
    previewArea()->resize(previewArea()->size() - QSize(10, 10));
    QTRY_COMPARE(fits().size(), 1);
}

void ScaleChangeTest::overlaysHaveTheirPlacesAgain_data()
{
    QTest::addColumn<QPoint>("window");
    QTest::newRow("window with another position in the new scale") << QPoint(400, 160);
    QTest::newRow("window with the same position in every scale") << QPoint(0, 0);
}

void ScaleChangeTest::overlaysHaveTheirPlacesAgain()
{
    QFETCH(QPoint, window);
    m_home->window().move(window);
    QTRY_COMPARE(nativePlace(&m_home->window()).topLeft(), window);
    const QWidget* button = m_home->find<TransparentBtn>();
    QVERIFY(button->isVisible());
    const auto inWindow = [this, button] {
        return nativePlace(button).topLeft() - nativePlace(&m_home->window()).topLeft();
    };
    const QPoint before = inWindow();
    setScale(1.5);
    QVERIFY(inWindow() != before);
    QTRY_COMPARE(nativePlace(button).size(), QSize(24, 24));
    QTRY_COMPARE(inWindow(), before);
}

/// Scaling is switched on before the application exists.
int main(int argc, char** argv)
{
    qputenv("QT_SCREEN_SCALE_FACTORS", "1.25");
    QApplication application(argc, argv);
    ScaleChangeTest test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "ScaleChangeTest.moc"
