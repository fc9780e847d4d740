#include "SvtaDeviceWidget.h"
#include "LogCapture.h"
#include "ShownHome.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTextDocument>
#include <QtTest>

namespace {

/// Counts the mouse presses that a card passes to its parent.
class ButtonParent : public QWidget
{
public:
    int presses = 0;
    int releases = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
    void mouseReleaseEvent(QMouseEvent*) override { ++releases; }
};

} // namespace

/// The card of one camera.
class SvtaDeviceWidgetTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void cardHasItsSize();
    void connectedCameraIsGreen();
    void failedCameraIsRed();
    void everyStatusButOneMeansFailed();
    void stateFollowsTheNextData();
    void cardShowsThePictureOfTheModel();
    void cardKeepsItsOwnCopy();
    void markupInANameIsShownAsItIs();
    void serialNumberIsToldWhenItIsKnown();
    void failedCameraTellsWhatToDo();
    void markupInASerialNumberIsShownAsItIs();
    void newDataIsLogged();

    void pressAloneOpensNothing();
    void releaseOpensTheCamera();
    void otherButtonsOpenNothing();
    void leftButtonIsTakenByTheCard();
    void clickOnALabelOpensTheCamera();
    void clickIsLogged();
    void keysOpenTheCamera_data();
    void keysOpenTheCamera();

private:
    [[nodiscard]] const QLabel* label(const char* name) const
    {
        return m_card->findChild<QLabel*>(QLatin1String(name));
    }

    /// The tool tip as it is shown.
    [[nodiscard]] QString tip() const
    {
        QTextDocument shown;
        shown.setHtml(m_card->toolTip());
        return shown.toPlainText();
    }

    ButtonParent m_parent;
    std::unique_ptr<SvtaDeviceWidget> m_card;
};

void SvtaDeviceWidgetTest::init()
{
    m_card = std::make_unique<SvtaDeviceWidget>(&m_parent);
    m_card->setData(ShownHome::connectedCamera());
    m_parent.resize(400, 300);
    m_parent.presses = m_parent.releases = 0;
    m_parent.show();
    m_card->show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_parent));
}

void SvtaDeviceWidgetTest::cardHasItsSize()
{
    QCOMPARE(m_card->size(), QSize(320, 100));
    QCOMPARE(m_card->minimumSize(), QSize(320, 100));
    QCOMPARE(m_card->maximumSize(), QSize(320, 100));
}

void SvtaDeviceWidgetTest::connectedCameraIsGreen()
{
    QCOMPARE(label("labName")->text(), QStringLiteral("NOVA EDGE"));
    QCOMPARE(label("labStatus")->text(), QStringLiteral("Connected"));
    const QString style = label("labStatus")->styleSheet();
    for (const char* part :
         {"#60DD00", "\"Microsoft YaHei UI\"", "14px", "font-weight: 400", "border: none"})
        QVERIFY2(style.contains(QLatin1String(part)), part);
    QCOMPARE(label("labStatus")->palette().color(QPalette::WindowText), QColor(0x60, 0xDD, 0x00));
}

void SvtaDeviceWidgetTest::failedCameraIsRed()
{
    m_card->setData(ShownHome::failedCamera());
    QCOMPARE(label("labStatus")->text(), QStringLiteral("Failed"));
    QVERIFY(label("labStatus")->styleSheet().contains(QLatin1String("#FF5E56")));
    QCOMPARE(label("labStatus")->palette().color(QPalette::WindowText), QColor(0xFF, 0x5E, 0x56));
}

void SvtaDeviceWidgetTest::everyStatusButOneMeansFailed()
{
    DeviceWidgetInfo camera = ShownHome::connectedCamera();
    for (const int status : {0, 2, 255}) {
        camera.status = static_cast<quint8>(status);
        m_card->setData(camera);
        QCOMPARE(label("labStatus")->text(), QStringLiteral("Failed"));
    }
}

void SvtaDeviceWidgetTest::stateFollowsTheNextData()
{
    m_card->setData(ShownHome::failedCamera());
    m_card->setData(ShownHome::connectedCamera());
    QCOMPARE(label("labStatus")->text(), QStringLiteral("Connected"));
    QVERIFY(!label("labStatus")->styleSheet().contains(QLatin1String("#FF5E56")));
}

void SvtaDeviceWidgetTest::cardShowsThePictureOfTheModel()
{
    QCOMPARE(label("labPicture")->styleSheet(),
             QStringLiteral("border-image:url(:/images/SVC802.png)"));
    QVERIFY(QFile::exists(QStringLiteral(":/images/SVC802.png")));
}

void SvtaDeviceWidgetTest::cardKeepsItsOwnCopy()
{
    DeviceWidgetInfo camera = ShownHome::connectedCamera();
    camera.sn = QStringLiteral("1");
    m_card->setData(camera);
    camera.sn = QStringLiteral("2");
    QCOMPARE(m_card->data().sn, QStringLiteral("1"));
}

void SvtaDeviceWidgetTest::markupInANameIsShownAsItIs()
{
    DeviceWidgetInfo camera = ShownHome::connectedCamera();
    camera.name = QStringLiteral("<h1>A</h1>&amp;");
    m_card->setData(camera);
    QCOMPARE(label("labName")->text(), camera.name);
    QCOMPARE(label("labName")->textFormat(), Qt::PlainText);
    QCOMPARE(label("labStatus")->textFormat(), Qt::PlainText);
}

void SvtaDeviceWidgetTest::serialNumberIsToldWhenItIsKnown()
{
    QCOMPARE(tip(), QString());
    QCOMPARE(m_card->accessibleDescription(), QString());
    m_card->setSerialNumber(QStringLiteral("SN-0815"));
    QCOMPARE(tip(), QStringLiteral("Serial number: SN-0815"));
    QCOMPARE(m_card->accessibleDescription(), QStringLiteral("Serial number: SN-0815"));
    QCOMPARE(m_card->data().sn, QStringLiteral("SN-0815"));
    m_card->setData(ShownHome::connectedCamera());
    QCOMPARE(tip(), QString());
}

void SvtaDeviceWidgetTest::failedCameraTellsWhatToDo()
{
    const QString reason =
        QStringLiteral("The camera does not answer. Unplug it and plug it in again.");
    m_card->setData(ShownHome::failedCamera());
    QCOMPARE(tip(), reason);
    QCOMPARE(m_card->accessibleDescription(), reason);
    m_card->setSerialNumber(QStringLiteral("SN-0815"));
    QCOMPARE(tip(), reason + QStringLiteral("\nSerial number: SN-0815"));
    m_card->setData(ShownHome::connectedCamera());
    QCOMPARE(tip(), QString());
}

void SvtaDeviceWidgetTest::markupInASerialNumberIsShownAsItIs()
{
    m_card->setSerialNumber(QStringLiteral("<h1>A</h1>&amp;"));
    QCOMPARE(tip(), QStringLiteral("Serial number: <h1>A</h1>&amp;"));
}

void SvtaDeviceWidgetTest::newDataIsLogged()
{
    const LogCapture log;
    DeviceWidgetInfo camera = ShownHome::connectedCamera();
    camera.path = QStringLiteral("new");
    m_card->setData(camera);
    QVERIFY(log.contains(QStringLiteral("info.path \"new\" mDeviceWidgetInfo.path \"%1\"")
                             .arg(ScriptedCameras::videoPath(0))));
}

void SvtaDeviceWidgetTest::pressAloneOpensNothing()
{
    QSignalSpy opened(m_card.get(), &SvtaDeviceWidget::sigDeviceWidgetClicked);
    QTest::mousePress(m_card.get(), Qt::LeftButton);
    QCOMPARE(opened.count(), 0);
}

void SvtaDeviceWidgetTest::releaseOpensTheCamera()
{
    QSignalSpy opened(m_card.get(), &SvtaDeviceWidget::sigDeviceWidgetClicked);
    QTest::mouseRelease(m_card.get(), Qt::LeftButton);
    QCOMPARE(opened.count(), 1);
    const auto camera = opened.first().first().value<DeviceWidgetInfo>();
    QCOMPARE(camera.path, ScriptedCameras::videoPath(0));
    QCOMPARE(camera.hidPath, ScriptedCameras::hidPath(0));
    QCOMPARE(int(camera.status), 1);
}

void SvtaDeviceWidgetTest::otherButtonsOpenNothing()
{
    QSignalSpy opened(m_card.get(), &SvtaDeviceWidget::sigDeviceWidgetClicked);
    QTest::mouseClick(m_card.get(), Qt::RightButton);
    QTest::mouseClick(m_card.get(), Qt::MiddleButton);
    QCOMPARE(opened.count(), 0);
    QCOMPARE(m_parent.presses, 2);
    QCOMPARE(m_parent.releases, 2);
}

void SvtaDeviceWidgetTest::leftButtonIsTakenByTheCard()
{
    QTest::mouseClick(m_card.get(), Qt::LeftButton);
    QCOMPARE(m_parent.presses, 0);
    QCOMPARE(m_parent.releases, 0);
}

void SvtaDeviceWidgetTest::clickOnALabelOpensTheCamera()
{
    QSignalSpy opened(m_card.get(), &SvtaDeviceWidget::sigDeviceWidgetClicked);
    for (const char* name : {"labPicture", "labName", "labStatus"})
        QTest::mouseClick(m_card->findChild<QLabel*>(QLatin1String(name)), Qt::LeftButton);
    QCOMPARE(opened.count(), 3);
}

void SvtaDeviceWidgetTest::clickIsLogged()
{
    const LogCapture log;
    QTest::mousePress(m_card.get(), Qt::LeftButton);
    QCOMPARE(log.texts(), QStringList{QStringLiteral("MouseButtonPress")});
    QTest::mouseRelease(m_card.get(), Qt::LeftButton);
    QCOMPARE(log.texts(), (QStringList{QStringLiteral("MouseButtonPress"),
                                       QStringLiteral("MouseButtonRelease")}));
}

void SvtaDeviceWidgetTest::keysOpenTheCamera_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("opened");
    QTest::newRow("Return") << int(Qt::Key_Return) << 1;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << 1;
    QTest::newRow("Space") << int(Qt::Key_Space) << 1;
    QTest::newRow("letter") << int(Qt::Key_A) << 0;
}

void SvtaDeviceWidgetTest::keysOpenTheCamera()
{
    QFETCH(const int, key);
    QCOMPARE(m_card->focusPolicy(), Qt::StrongFocus);
    QSignalSpy opened(m_card.get(), &SvtaDeviceWidget::sigDeviceWidgetClicked);
    m_card->setFocus();
    QTest::keyClick(m_card.get(), static_cast<Qt::Key>(key));
    QTEST(opened.count(), "opened");
}

QTEST_MAIN(SvtaDeviceWidgetTest)
#include "SvtaDeviceWidgetTest.moc"
