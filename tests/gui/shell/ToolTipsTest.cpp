#include "HidCommands.h"
#include "LogCapture.h"
#include "Pointer.h"
#include "ShownHome.h"
#include "SvtaDeviceWidget.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <QApplication>
#include <QImage>
#include <QScreen>
#include <QToolTip>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

constexpr double kReadable = 4.5; // for text of this size
constexpr int kFrame = 2;

/// Shows the page of a widget and returns the widget.
using Place = std::function<QWidget*(ShownHome&)>;

/// The tool tip that is on the screen; null when there is none.
const QWidget* shownTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto isTip = [](const QWidget* window) {
        return window->inherits("QTipLabel") && window->isVisible();
    };
    const auto found = std::find_if(windows.begin(), windows.end(), isTip);
    return found != windows.end() ? *found : nullptr;
}

double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// What the screen shows of @p tip; null if there is no tip.
QImage pictureOf(const QWidget* tip)
{
    if (!tip)
        return {};
    const QRect place = tip->geometry();
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

/// What @p tip paints into its window, which is black before.
QImage paintedBy(const QWidget* tip)
{
    if (!tip)
        return {};
    QImage picture(tip->size(), QImage::Format_RGB32);
    picture.fill(Qt::black);
    const_cast<QWidget*>(tip)->render(&picture);
    return picture;
}

/// The colours inside the frame, with the number of their pixels.
std::map<QRgb, int> coloursOf(const QImage& picture)
{
    std::map<QRgb, int> colours;
    for (int y = kFrame; y < picture.height() - kFrame; ++y) {
        for (int x = kFrame; x < picture.width() - kFrame; ++x)
            ++colours[picture.pixel(x, y)];
    }
    return colours;
}

QColor backgroundOf(const std::map<QRgb, int>& colours)
{
    const auto most =
        std::max_element(colours.begin(), colours.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    return QColor(most->first);
}

/// Between the background and the colour of the text, which is the one that differs most.
double contrastIn(const std::map<QRgb, int>& colours)
{
    const QColor background = backgroundOf(colours);
    double most = 1;
    for (const auto& [colour, count] : colours)
        most = std::max(most, contrast(QColor(colour), background));
    return most;
}

} // namespace

Q_DECLARE_METATYPE(Place)

/// Tool tips on the screen.
class ToolTipsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void canBeReadEverywhere_data();
    void canBeReadEverywhere();
    void followThePointerToAnEqualOne();

private:
    /// Rests the pointer on @p widget until its tool tip is on the screen.
    [[nodiscard]] static const QWidget* rest(const QWidget& widget)
    {
        Pointer::moveTo(Pointer::middleOf(widget));
        Pointer::moveTo(Pointer::middleOf(widget) + QPoint(1, 0));
        const bool shown =
            QTest::qWaitFor([&] { return shownTip() && QToolTip::text() == widget.toolTip(); });
        return shown ? shownTip() : nullptr;
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void ToolTipsTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    m_home->cameras().hidapi().respondTo(HidCommands::ConnectionProbe, {QByteArray(1, '\1')});
}

void ToolTipsTest::cleanup()
{
    QToolTip::hideText();
    Pointer::park();
    m_home.reset();
    m_log.reset();
}

void ToolTipsTest::canBeReadEverywhere_data()
{
    QTest::addColumn<Place>("place");
    const auto onList = [](const char* name) {
        return Place([name](ShownHome& home) -> QWidget* {
            return home.passStart() ? home.find(name) : nullptr;
        });
    };
    const auto onSettings = [](const char* name) {
        return Place([name](ShownHome& home) -> QWidget* {
            return home.passStart() && home.openSettings() ? home.find(name) : nullptr;
        });
    };
    QTest::newRow("title bar of the start page")
        << Place([](ShownHome& home) -> QWidget* { return home.find("minimumBtn"); });
    QTest::newRow("more") << onList("moreBtn");
    QTest::newRow("minimize") << onList("minimumBtn");
    QTest::newRow("close") << onList("closeBtn");
    QTest::newRow("card") << Place([](ShownHome& home) -> QWidget* {
        return home.passStart() ? home.find<SvtaDeviceWidget>() : nullptr;
    });
    QTest::newRow("back") << onSettings("backBtn");
    QTest::newRow("information") << onSettings("deviceInfoBtn");
    QTest::newRow("settings page") << onSettings("btnIntelligent");
    QTest::newRow("information page") << Place([](ShownHome& home) -> QWidget* {
        home.cameras().setSerialNumber(QByteArray(120, 'S'));
        if (!home.passStart() || !home.openSettings())
            return nullptr;
        home.click("deviceInfoBtn");
        return home.find("labSNNumber");
    });
}

void ToolTipsTest::canBeReadEverywhere()
{
    QFETCH(const Place, place);
    QWidget* widget = place(*m_home);
    QVERIFY(widget);
    if (widget->toolTip().isEmpty())
        widget->setToolTip(QStringLiteral("Reason"));
    QVERIFY(rest(*widget));
    // The X server executes and the compositor shows later what is painted now.
    QTRY_VERIFY(!pictureOf(shownTip()).isNull() && pictureOf(shownTip()) == paintedBy(shownTip()));
    const auto colours = coloursOf(pictureOf(shownTip()));
    QCOMPARE(backgroundOf(colours).name(), QStringLiteral("#ffffff"));
    QVERIFY2(contrastIn(colours) >= kReadable, qPrintable(QString::number(contrastIn(colours))));
}

void ToolTipsTest::followThePointerToAnEqualOne()
{
    auto* close = m_home->find("closeBtn");
    auto* minimum = m_home->find("minimumBtn");
    close->setToolTip(minimum->toolTip());
    const QWidget* tip = rest(*minimum);
    QVERIFY(tip);
    const QPoint before = tip->pos();
    Pointer::moveTo(Pointer::middleOf(*close));
    Pointer::moveTo(Pointer::middleOf(*close) + QPoint(1, 0));
    QTRY_VERIFY(shownTip() && shownTip()->x() > before.x());
}

QTEST_MAIN(ToolTipsTest)
#include "ToolTipsTest.moc"
