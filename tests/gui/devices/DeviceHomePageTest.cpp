#include "MaskForm.h"
#include "ShownList.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

/// The device list page: empty state, filled state, and the pages that its cards open.
class DeviceHomePageTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsInTheEmptyState();
    void emptyStateHasItsTexts();
    void linkAsksForTheSupportedProducts();
    void filledStateReplacesTheEmptyOne();
    void emptyStateComesBackWhole();
    void startEnumeratesAndListsOnce();
    void listHasNoHoverColour();
    void maskCoversThePage();

    void connectedCameraOpensItsPages();
    void failedCameraOpensItsInformation();
    void keyboardReachesAndOpensACard();
    void pressingOnACardAndReleasingElsewhereOpensThePressedOne();

private:
    template <typename Widget>
    [[nodiscard]] Widget* find(const char* name)
    {
        return m_shown->page().findChild<Widget*>(QLatin1String(name));
    }
    void buildFilled()
    {
        m_shown->page().start();
        m_shown->page().showFilledState();
    }

    std::unique_ptr<ShownList> m_shown;
};

void DeviceHomePageTest::init()
{
    m_shown = std::make_unique<ShownList>(2);
    QVERIFY(m_shown->isShown());
}

void DeviceHomePageTest::cleanup()
{
    m_shown.reset();
}

void DeviceHomePageTest::startsInTheEmptyState()
{
    QCOMPARE(m_shown->page().entryCount(), 0);
    QVERIFY(!m_shown->list().isVisible());
    QVERIFY(find<QWidget>("noDeviceWidget")->isVisible());
}

void DeviceHomePageTest::emptyStateHasItsTexts()
{
    QCOMPARE(find<QLabel>("labDefault")->styleSheet(),
             QStringLiteral("border-image: url(:/images/nodevice.png);"));
    const auto* text = find<QLabel>("labNoDevice");
    QCOMPARE(text->text(), QStringLiteral("Please Connect Device"));
    QCOMPARE(text->palette().color(QPalette::WindowText), QColor(0x99, 0x99, 0x99));
    QCOMPARE(text->font().pixelSize(), 14);
    const auto* link = find<QPushButton>("btnSupportedProducts");
    QCOMPARE(link->text(), QStringLiteral("支持设备"));
    for (const char* part : {"12px", "\"Microsoft YaHei\"", "#3476FF", "border: none"})
        QVERIFY2(link->styleSheet().contains(QLatin1String(part)), part);
}

void DeviceHomePageTest::linkAsksForTheSupportedProducts()
{
    QSignalSpy asked(&m_shown->page(), &DeviceHomePage::sigShowSupportedProduct);
    QTest::mouseClick(find<QPushButton>("btnSupportedProducts"), Qt::LeftButton);
    QCOMPARE(asked.count(), 1);
}

void DeviceHomePageTest::filledStateReplacesTheEmptyOne()
{
    buildFilled();
    QVERIFY(m_shown->list().isVisible());
    QVERIFY(!find<QWidget>("noDeviceWidget")->isVisible());
    QCOMPARE(m_shown->list().height(), 240);
    const QString style = find<QWidget>("bgWidget")->styleSheet();
    for (const char* part : {"#F4F4F4", "1px solid #F2F2F2", "border-top: none"})
        QVERIFY2(style.contains(QLatin1String(part)), part);
    QTRY_COMPARE(m_shown->list().mapTo(&m_shown->page(), QPoint()).y(), 17);
}

void DeviceHomePageTest::emptyStateComesBackWhole()
{
    const QRect before = find<QWidget>("noDeviceWidget")->geometry();
    buildFilled();
    m_shown->page().showEmptyState();
    QVERIFY(!m_shown->list().isVisible());
    QVERIFY(find<QWidget>("noDeviceWidget")->isVisible());
    QTRY_COMPARE(find<QWidget>("noDeviceWidget")->geometry(), before);
    QVERIFY(find<QWidget>("bgWidget")->styleSheet().contains(QLatin1String("#FFFFFF")));
}

void DeviceHomePageTest::startEnumeratesAndListsOnce()
{
    QElapsedTimer clock;
    clock.start();
    m_shown->page().start();
    QVERIFY(clock.elapsed() >= 500);
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(m_shown->cameras().video().listings(), 1);
    QCOMPARE(m_shown->pairs(), (QStringList{ShownList::pair(0, 0), ShownList::pair(1, 1)}));
    const QString style = find<QWidget>("bgWidget")->styleSheet();
    for (const char* part : {"#FFFFFF", "1px solid #F2F2F2", "border-top: none"})
        QVERIFY2(style.contains(QLatin1String(part)), part);
}

void DeviceHomePageTest::listHasNoHoverColour()
{
    QCOMPARE(m_shown->list().sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(m_shown->list().sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    const QString style = m_shown->list().styleSheet();
    QVERIFY(style.contains(QLatin1String("item:hover")));
    QVERIFY(style.contains(QLatin1String("background: transparent")));
}

void DeviceHomePageTest::maskCoversThePage()
{
    auto* mask = m_shown->page().findChild<MaskForm*>();
    QVERIFY(mask);
    mask->show();
    QCOMPARE(mask->geometry(), m_shown->page().geometry());
}

void DeviceHomePageTest::connectedCameraOpensItsPages()
{
    buildFilled();
    QSignalSpy pages(&m_shown->page(), &DeviceHomePage::sigShowDevicePages);
    QSignalSpy information(&m_shown->page(), &DeviceHomePage::sigShowDeviceInfo);
    QTest::mouseClick(m_shown->cards().at(1), Qt::LeftButton);
    QCOMPARE(information.count(), 0);
    QCOMPARE(pages.count(), 1);
    QCOMPARE(pages.first().first().value<DeviceWidgetInfo>().hidPath, ScriptedCameras::hidPath(1));
}

void DeviceHomePageTest::failedCameraOpensItsInformation()
{
    m_shown->cameras().refuse(0);
    buildFilled();
    QSignalSpy pages(&m_shown->page(), &DeviceHomePage::sigShowDevicePages);
    QSignalSpy information(&m_shown->page(), &DeviceHomePage::sigShowDeviceInfo);
    QTest::mouseClick(m_shown->cards().at(0), Qt::LeftButton);
    QCOMPARE(pages.count(), 0);
    QCOMPARE(information.count(), 1);
    QCOMPARE(information.first().first().value<DeviceWidgetInfo>().hidPath,
             ScriptedCameras::hidPath(0));
}

void DeviceHomePageTest::keyboardReachesAndOpensACard()
{
    buildFilled();
    m_shown->page().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_shown->page()));
    QSignalSpy pages(&m_shown->page(), &DeviceHomePage::sigShowDevicePages);
    for (int tabs = 0; tabs < 6 && !m_shown->cards().at(1)->hasFocus(); ++tabs) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : &m_shown->page(), Qt::Key_Tab);
    }
    QVERIFY(m_shown->cards().at(1)->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(pages.count(), 1);
    QCOMPARE(pages.first().first().value<DeviceWidgetInfo>().hidPath, ScriptedCameras::hidPath(1));
}

void DeviceHomePageTest::pressingOnACardAndReleasingElsewhereOpensThePressedOne()
{
    buildFilled();
    QSignalSpy pages(&m_shown->page(), &DeviceHomePage::sigShowDevicePages);
    QTest::mousePress(m_shown->cards().at(0), Qt::LeftButton);
    QCOMPARE(pages.count(), 0);
    // The pressed widget grabs the pointer until the button is released, at any position.
    QTest::mouseRelease(m_shown->cards().at(0), Qt::LeftButton, Qt::NoModifier, {100, 300});
    QCOMPARE(pages.count(), 1);
    QCOMPARE(pages.first().first().value<DeviceWidgetInfo>().hidPath, ScriptedCameras::hidPath(0));
}

QTEST_MAIN(DeviceHomePageTest)
#include "DeviceHomePageTest.moc"
