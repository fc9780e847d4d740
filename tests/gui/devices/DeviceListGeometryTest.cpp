#include "ShownHome.h"
#include "ShownList.h"

#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

/// The height of the list, and its visible part.
class DeviceListGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void heightAfterTheStart_data();
    void heightAfterTheStart();
    void heightAfterHotPlug_data();
    void heightAfterHotPlug();
    void heightFollowsEveryChange();
    void returningToTheListShowsEveryEntryInFullHeight();

    void lastInterfacesCardHasNoSizeHint();
    void cardBeforeAnotherInterfaceHasItsSizeHint();
    void cardsAreInTheirPlaces();
    void everyCardCanBeScrolledIntoView_data();
    void everyCardCanBeScrolledIntoView();
    void nothingBesideTheCardsIsBlack_data();
    void nothingBesideTheCardsIsBlack();

private:
    static bool isWhollyVisible(const QWidget& card)
    {
        return card.visibleRegion() == QRegion(card.rect());
    }
    static void scrollToEnd(QWidget& page)
    {
        for (QAbstractScrollArea* area : page.findChildren<QAbstractScrollArea*>())
            area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
        QTest::qWait(20);
    }
};

void DeviceListGeometryTest::heightAfterTheStart_data()
{
    QTest::addColumn<int>("cameras");
    QTest::addColumn<int>("height");
    QTest::newRow("1") << 1 << 120;
    QTest::newRow("4") << 4 << 480;
    QTest::newRow("5") << 5 << 600;
    QTest::newRow("6") << 6 << 720;
    QTest::newRow("0") << 0 << 0;
}

void DeviceListGeometryTest::heightAfterTheStart()
{
    QFETCH(const int, cameras);
    QFETCH(const int, height);
    ShownHome home(cameras);
    QVERIFY(home.passStart());
    const auto* list = home.find<QListWidget>("deviceList");
    QCOMPARE(list->count(), cameras);
    QCOMPARE(list->isVisible(), cameras > 0);
    QCOMPARE(home.find("noDeviceWidget")->isVisible(), cameras == 0);
    if (cameras == 0)
        return;
    QTRY_COMPARE(list->height(), height);
    QCOMPARE(list->minimumHeight(), height);
    QCOMPARE(list->maximumHeight(), height);
}

void DeviceListGeometryTest::heightAfterHotPlug_data()
{
    QTest::addColumn<int>("cameras");
    QTest::addColumn<int>("height");
    QTest::newRow("1") << 1 << 120;
    QTest::newRow("4") << 4 << 480;
    QTest::newRow("5") << 5 << 600;
    QTest::newRow("6") << 6 << 600;
    QTest::newRow("8") << 8 << 600;
    QTest::newRow("0") << 0 << 0;
}

void DeviceListGeometryTest::heightAfterHotPlug()
{
    QFETCH(const int, cameras);
    QFETCH(const int, height);
    ShownList shown(cameras);
    QVERIFY(shown.isShown());
    shown.update();
    QCOMPARE(shown.page().entryCount(), cameras);
    QCOMPARE(shown.list().isVisible(), cameras > 0);
    QCOMPARE(shown.list().minimumHeight(), height);
    QCOMPARE(shown.list().maximumHeight(), height);
    QTest::qWait(20);
    if (cameras > 0)
        QCOMPARE(shown.list().height(), height);
    QCOMPARE(shown.list().verticalScrollBar()->maximum() > 0, cameras > 5);
}

void DeviceListGeometryTest::heightFollowsEveryChange()
{
    ShownList shown;
    QVERIFY(shown.isShown());
    const std::pair<int, int> changes[] = {{6, 600}, {4, 480}, {0, 0}, {1, 120}, {6, 600}};
    for (const auto& [cameras, height] : changes) {
        shown.cameras().plugIn(cameras);
        shown.update();
        QCOMPARE(shown.list().maximumHeight(), height);
        QCOMPARE(shown.list().isVisible(), cameras > 0);
    }
}

void DeviceListGeometryTest::returningToTheListShowsEveryEntryInFullHeight()
{
    ShownHome home(6);
    QVERIFY(home.passStart());
    home.find<DeviceHomePage>()->slotUpdateCameraList(ScriptedCameras::videoDevices(),
                                                      DevicePluggedIn);
    const auto* list = home.find<QListWidget>("deviceList");
    QCOMPARE(list->maximumHeight(), 600);
    home.window().showView(SvtaPagesView::AboutUsPage);
    home.window().showView(SvtaPagesView::HomePage);
    QCOMPARE(list->maximumHeight(), 720);
}

void DeviceListGeometryTest::lastInterfacesCardHasNoSizeHint()
{
    ShownList shown(3);
    shown.update();
    QCOMPARE(shown.list().item(0)->sizeHint(), QSize(320, 120));
    QCOMPARE(shown.list().item(1)->sizeHint(), QSize(320, 120));
    QVERIFY(!shown.list().item(2)->sizeHint().isValid());
}

void DeviceListGeometryTest::cardBeforeAnotherInterfaceHasItsSizeHint()
{
    ShownList shown(2);
    shown.cameras().hidapi().plugIn({QByteArray("/dev/hidraw9"), 0x1234, 0x5678});
    shown.update();
    QCOMPARE(shown.page().entryCount(), 2);
    QCOMPARE(shown.list().item(1)->sizeHint(), QSize(320, 120));
}

void DeviceListGeometryTest::cardsAreInTheirPlaces()
{
    ShownList shown(4);
    shown.update();
    QTest::qWait(20);
    for (int row = 0; row < 4; ++row) {
        const SvtaDeviceWidget* card = shown.cards().at(row);
        QCOMPARE(card->size(), QSize(320, 100));
        QCOMPARE(card->mapTo(&shown.list(), QPoint()), QPoint(0, row * 120));
        QVERIFY(isWhollyVisible(*card));
    }
}

void DeviceListGeometryTest::everyCardCanBeScrolledIntoView_data()
{
    QTest::addColumn<bool>("byHotPlug");
    QTest::newRow("start") << false;
    QTest::newRow("hot-plug") << true;
}

void DeviceListGeometryTest::everyCardCanBeScrolledIntoView()
{
    QFETCH(const bool, byHotPlug);
    ShownHome home(6);
    QVERIFY(home.passStart());
    auto* page = home.find<DeviceHomePage>();
    if (byHotPlug)
        page->slotUpdateCameraList(ScriptedCameras::videoDevices(), DevicePluggedIn);
    QTest::qWait(20);
    auto* list = home.find<QListWidget>("deviceList");
    const auto card = [list](int row) { return list->itemWidget(list->item(row)); };
    QVERIFY(isWhollyVisible(*card(0)));
    QVERIFY(!isWhollyVisible(*card(5)));
    scrollToEnd(*page);
    QVERIFY2(isWhollyVisible(*card(5)), "the last card");
    QVERIFY2(isWhollyVisible(*card(4)), "the card before");
    QCOMPARE(card(5)->size(), QSize(320, 100));
}

void DeviceListGeometryTest::nothingBesideTheCardsIsBlack_data()
{
    QTest::addColumn<bool>("afterHotPlug");
    QTest::newRow("after the start: the page scrolls") << false;
    QTest::newRow("after a hot-plug event: the list scrolls") << true;
}

void DeviceListGeometryTest::nothingBesideTheCardsIsBlack()
{
    QFETCH(const bool, afterHotPlug);
    ShownHome home(6);
    QVERIFY(home.passStart());
    auto* page = home.find<DeviceHomePage>();
    if (afterHotPlug)
        page->slotUpdateCameraList(ScriptedCameras::videoDevices(), DevicePluggedIn);
    constexpr int rightEdgeOfTheCards = 340;
    const QRect strip(page->mapToGlobal(QPoint(rightEdgeOfTheCards, 0)),
                      QSize(page->width() - rightEdgeOfTheCards, page->height()));
    const auto darkestBeside = [&strip] {
        const QImage image =
            QGuiApplication::primaryScreen()
                ->grabWindow(0, strip.x(), strip.y(), strip.width(), strip.height())
                .toImage();
        int darkest = 255;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                darkest = qMin(darkest, qGray(image.pixel(x, y)));
        }
        return darkest;
    };
    QTRY_VERIFY2(darkestBeside() > 150, qPrintable(QString::number(darkestBeside())));
}

QTEST_MAIN(DeviceListGeometryTest)
#include "DeviceListGeometryTest.moc"
