#include "DeviceHomePage.h"
#include "DeviceManager.h"
#include "PluggedCamera.h"
#include "SvtaDeviceWidget.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <QLabel>
#include <QListWidget>
#include <QtTest>
#include <thread>

namespace {

constexpr int kTimeoutMs = 20000;

/// The list page with its hot-plug watch, as the program has them.
class ListPage
{
public:
    ListPage()
    {
        QObject::connect(&m_page, &DeviceHomePage::sigUpdateCameraListFinished, &m_page,
                         [this] { ++m_rebuilds; });
        m_page.resize(360, 620);
        m_page.show();
        m_page.start();
        if (m_page.entryCount() > 0)
            m_page.showFilledState();
        DeviceManager::instance().start();
    }
    ~ListPage() { DeviceManager::instance().stop(); }

    DeviceHomePage& page() { return m_page; }
    [[nodiscard]] int rebuilds() const { return m_rebuilds; }
    [[nodiscard]] QListWidget* list() const { return m_page.findChild<QListWidget*>("deviceList"); }

    [[nodiscard]] QList<SvtaDeviceWidget*> cards() const
    {
        QList<SvtaDeviceWidget*> result;
        for (int row = 0; row < list()->count(); ++row)
            result << qobject_cast<SvtaDeviceWidget*>(list()->itemWidget(list()->item(row)));
        return result;
    }
    [[nodiscard]] QStringList states() const
    {
        QStringList result;
        for (const SvtaDeviceWidget* card : cards())
            result << card->findChild<QLabel*>("labStatus")->text();
        return result;
    }

private:
    DeviceHomePage m_page;
    int m_rebuilds = 0;
};

const QString kConnected = QStringLiteral("Connected");
const QString kFailed = QStringLiteral("Failed");

} // namespace

class DeviceListTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The main window registers both types, because they are queued from the watcher's thread.
        qRegisterMetaType<QList<UVCDeviceInfo>>("QList<UVCDeviceInfo>");
        qRegisterMetaType<QMap<QString, HidDevices>>("QMap<QString,HidDevices>");
    }

    void cameraThatIsThereAtTheStartIsListed()
    {
        PluggedCamera camera;
        const ListPage page;
        QCOMPARE(page.states(), QStringList{kConnected});
        QVERIFY(page.list()->isVisible());
        const DeviceWidgetInfo info = page.cards().first()->data();
        QCOMPARE(info.path, camera.videoPath());
        QCOMPARE(info.hidPath, camera.hidPath());
        QCOMPARE(page.cards().first()->findChild<QLabel*>("labName")->text(),
                 QStringLiteral("NOVA EDGE"));
        QVERIFY(camera.isReleased());
    }

    void cardComesAndGoesWithTheCamera()
    {
        ListPage page;
        QVERIFY(!page.list()->isVisible());
        auto camera = std::make_unique<PluggedCamera>();
        QTRY_COMPARE_WITH_TIMEOUT(page.states(), QStringList{kConnected}, kTimeoutMs);
        QVERIFY(page.list()->isVisible());
        camera.reset();
        QTRY_COMPARE_WITH_TIMEOUT(page.states(), QStringList(), kTimeoutMs);
        QVERIFY(!page.list()->isVisible());
        QVERIFY(page.page().findChild<QWidget*>("noDeviceWidget")->isVisible());
        QTest::qWait(300);
        QCOMPARE(page.rebuilds(), 2);
    }

    /// A loose cable: the events come faster than the list can be built.
    void listIsRightSoonAfterABurst()
    {
        ListPage page;
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(page.states(), QStringList{kConnected}, kTimeoutMs);
        std::atomic<bool> isPlugging{true};
        std::thread hand([&] {
            for (int i = 0; i < 30; ++i) {
                camera.unplug();
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                camera.plug();
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            }
            isPlugging = false;
        });
        const bool ended = QTest::qWaitFor([&] { return !isPlugging; }, kTimeoutMs);
        hand.join();
        QVERIFY(ended);
        const int before = page.rebuilds();
        QTest::qWait(2000);
        QCOMPARE(page.states(), QStringList{kConnected});
        // One rebuild that was under way and one for all that waited, with two signals each.
        QVERIFY2(page.rebuilds() <= before + 4,
                 QByteArray::number(page.rebuilds() - before).constData());
    }

    void cameraThatDoesNotAnswerIsListedAsFailed()
    {
        const ListPage page;
        PluggedCamera camera{{"probe", "1"}};
        QTRY_COMPARE_WITH_TIMEOUT(page.states(), QStringList{kFailed}, kTimeoutMs);
        QVERIFY(page.cards()
                    .first()
                    ->findChild<QLabel*>("labStatus")
                    ->styleSheet()
                    .contains(QStringLiteral("#FF5E56")));
    }

    void cameraWhoseInterfaceIsShutIsListedAsFailed()
    {
        const ListPage page;
        PluggedCamera camera;
        camera.fault("open-error");
        QTRY_COMPARE_WITH_TIMEOUT(page.states(), QStringList{kFailed}, kTimeoutMs);
        camera.clearFaults();
        camera.unplug();
        camera.plug();
        QTRY_COMPARE_WITH_TIMEOUT(page.states(), QStringList{kConnected}, kTimeoutMs);
    }

    void connectedCardOpensTheSettingsAndFailedCardTheInformation()
    {
        PluggedCamera good;
        PluggedCamera bad{{"probe", "1"}};
        ListPage page;
        QCOMPARE(page.states(), (QStringList{kConnected, kFailed}));
        const QSignalSpy settings(&page.page(), &DeviceHomePage::sigShowDevicePages);
        const QSignalSpy information(&page.page(), &DeviceHomePage::sigShowDeviceInfo);
        QTest::mouseClick(page.cards().at(0), Qt::LeftButton);
        QCOMPARE(settings.size(), 1);
        QCOMPARE(information.size(), 0);
        QTest::mouseClick(page.cards().at(1), Qt::LeftButton);
        QCOMPARE(settings.size(), 1);
        QCOMPARE(information.size(), 1);
        QCOMPARE(settings.first().first().value<DeviceWidgetInfo>().hidPath, good.hidPath());
        QCOMPARE(information.first().first().value<DeviceWidgetInfo>().path, bad.videoPath());
    }

    void cameraOfAnotherMakerIsNotListed()
    {
        const ListPage page;
        PluggedCamera stranger{{"vid", "1111"}};
        PluggedCamera camera;
        QTRY_COMPARE_WITH_TIMEOUT(page.cards().size(), 1, kTimeoutMs);
        QTest::qWait(300);
        QCOMPARE(page.cards().size(), 1);
        QCOMPARE(page.cards().first()->data().path, camera.videoPath());
    }

    void interfaceWithoutAnyPictureGetsNoCard()
    {
        const ListPage page;
        PluggedCamera camera{{"video", "0"}};
        QTRY_COMPARE_WITH_TIMEOUT(page.rebuilds(), 1, kTimeoutMs);
        QCOMPARE(page.cards().size(), 0);
    }

    void cardNameWithMarkupReachesNoLabel()
    {
        PluggedCamera camera{{"card", "<b>bold</b>"}, {"product", "<i>x</i>"}};
        ListPage page;
        QCOMPARE(page.cards().size(), 1);
        for (const QLabel* label : page.page().findChildren<QLabel*>())
            QVERIFY(!label->text().contains(QLatin1Char('<')));
    }

    void everyHotPlugEventTellsTheListBeforeAndAfter()
    {
        PluggedCamera first;
        ListPage page;
        QSignalSpy finished(&page.page(), &DeviceHomePage::sigUpdateCameraListFinished);
        PluggedCamera second;
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
        const QList<QVariant> arrival = finished.takeFirst();
        QCOMPARE(arrival.at(0).value<QList<UVCDeviceInfo>>().size(), 2);
        QCOMPARE(arrival.at(1).value<QList<UVCDeviceInfo>>().size(), 1);
        QCOMPARE(arrival.at(2).value<HidDeviceMap>().size(), 2);
        QCOMPARE(arrival.at(3).value<HidDeviceMap>().size(), 1);
        QCOMPARE(arrival.at(4).toInt(), 0);
        second.unplug();
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
        QCOMPARE(finished.first().at(0).value<QList<UVCDeviceInfo>>().size(), 1);
        QCOMPARE(finished.first().at(4).toInt(), 1);
    }

    void cameraThatLeavesDuringItsProbeIsNoHarm()
    {
        const ListPage page;
        PluggedCamera camera;
        camera.fault("unplug-at 1");
        QTRY_COMPARE_WITH_TIMEOUT(page.rebuilds(), 2, kTimeoutMs);
        QCOMPARE(page.cards().size(), 0);
        camera.clearFaults();
        camera.plug();
        QTRY_COMPARE_WITH_TIMEOUT(page.states(), QStringList{kConnected}, kTimeoutMs);
    }
};

QTEST_MAIN(DeviceListTest)
#include "DeviceListTest.moc"
