#include "Pointer.h"
#include "TransparentBtn.h"
#include "TransparentWidget.h"
#include "TransPrewBtn.h"

#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

namespace {

QLabel* labelOf(const QWidget& widget)
{
    return widget.findChild<QLabel*>(QStringLiteral("label"));
}

/// Counts the presses that a label passes to its parent.
class PressCounter : public QObject
{
public:
    explicit PressCounter(QObject* watched) { watched->installEventFilter(this); }
    [[nodiscard]] int count() const { return m_count; }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::MouseButtonPress ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

} // namespace

/// The three small windows over the preview, each tested alone.
class OverlayControlsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void gridIsATranslucentPicture();
    void gridButtonIsATranslucentPicture();
    void previewButtonIsATranslucentPicture();

    void gridButtonActsOnThePressOfTheLeftButton();
    void gridButtonIgnoresOtherButtonsAndReleases();
    void gridButtonAcceptsOnlyTheLeftPress();
    void gridButtonIgnoresOtherObjects();

    void previewIsClosedAtFirst();
    void previewButtonActsOnTheReleaseOfTheLeftButton();
    void previewButtonIgnoresOtherButtonsAndPresses();
    void previewButtonReportsWhenThePointerEntersAndLeaves();
    void previewButtonIgnoresOtherObjects();

private:
    template <typename Overlay>
    static void checkLook(const Overlay& overlay, const QSize& size, const char* image)
    {
        QCOMPARE(overlay.size(), size);
        QVERIFY(overlay.testAttribute(Qt::WA_TranslucentBackground));
        QCOMPARE(overlay.windowFlags(),
                 Qt::WindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint));
        QVERIFY(labelOf(overlay));
        QCOMPARE(labelOf(overlay)->geometry(), QRect(QPoint(0, 0), size));
        QCOMPARE(labelOf(overlay)->styleSheet(), QLatin1String(image));
        QVERIFY(!overlay.isVisible());
    }
};

void OverlayControlsTest::init()
{
    Pointer::park();
}

void OverlayControlsTest::gridIsATranslucentPicture()
{
    checkLook(TransparentWidget(), {360, 202}, "image: url(:/images/line.png);");
}

void OverlayControlsTest::gridButtonIsATranslucentPicture()
{
    checkLook(TransparentBtn(), {24, 24}, "image: url(:/images/jiugongge.svg);");
}

void OverlayControlsTest::previewButtonIsATranslucentPicture()
{
    checkLook(TransPrewBtn(), {24, 24}, "image: url(:/images/previewopen.svg);");
}

void OverlayControlsTest::gridButtonActsOnThePressOfTheLeftButton()
{
    const TransparentBtn button;
    QSignalSpy toggled(&button, &TransparentBtn::sigShowLine);
    QTest::mousePress(labelOf(button), Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);
    QTest::mouseRelease(labelOf(button), Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);
}

void OverlayControlsTest::gridButtonIgnoresOtherButtonsAndReleases()
{
    const TransparentBtn button;
    QSignalSpy toggled(&button, &TransparentBtn::sigShowLine);
    QTest::mouseClick(labelOf(button), Qt::RightButton);
    QTest::mouseClick(labelOf(button), Qt::MiddleButton);
    QTest::mouseMove(labelOf(button));
    QTest::mouseRelease(labelOf(button), Qt::LeftButton);
    QCOMPARE(toggled.count(), 0);
}

void OverlayControlsTest::gridButtonAcceptsOnlyTheLeftPress()
{
    TransparentBtn button;
    const PressCounter left(&button);
    QTest::mouseClick(labelOf(button), Qt::LeftButton);
    QCOMPARE(left.count(), 0);
    QTest::mouseClick(labelOf(button), Qt::RightButton);
    QCOMPARE(left.count(), 1);
}

void OverlayControlsTest::gridButtonIgnoresOtherObjects()
{
    TransparentBtn button;
    QWidget other;
    other.installEventFilter(&button);
    QSignalSpy toggled(&button, &TransparentBtn::sigShowLine);
    QTest::mouseClick(&other, Qt::LeftButton);
    QCOMPARE(toggled.count(), 0);
}

void OverlayControlsTest::previewIsClosedAtFirst()
{
    TransPrewBtn button;
    QVERIFY(!button.isPreviewOpen());
    button.setPreviewOpen(true);
    QVERIFY(button.isPreviewOpen());
    QCOMPARE(labelOf(button)->styleSheet(),
             QStringLiteral("image: url(:/images/previewopen.svg);"));
}

void OverlayControlsTest::previewButtonActsOnTheReleaseOfTheLeftButton()
{
    const TransPrewBtn button;
    QSignalSpy toggled(&button, &TransPrewBtn::sigHandleCapture);
    QTest::mousePress(labelOf(button), Qt::LeftButton);
    QCOMPARE(toggled.count(), 0);
    QTest::mouseRelease(labelOf(button), Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);
}

void OverlayControlsTest::previewButtonIgnoresOtherButtonsAndPresses()
{
    const TransPrewBtn button;
    QSignalSpy toggled(&button, &TransPrewBtn::sigHandleCapture);
    QTest::mouseClick(labelOf(button), Qt::RightButton);
    QTest::mouseClick(labelOf(button), Qt::MiddleButton);
    QTest::mousePress(labelOf(button), Qt::LeftButton);
    QCOMPARE(toggled.count(), 0);
}

void OverlayControlsTest::previewButtonReportsWhenThePointerEntersAndLeaves()
{
    TransPrewBtn button;
    QSignalSpy came(&button, &TransPrewBtn::sigShowPreviewTip);
    QSignalSpy went(&button, &TransPrewBtn::sigHidePreviewTip);
    button.move(500, 400);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTRY_COMPARE(button.pos(), QPoint(500, 400));
    QCOMPARE(came.count(), 0);
    Pointer::moveTo(Pointer::middleOf(button));
    QTRY_COMPARE(came.count(), 1);
    QCOMPARE(went.count(), 0);
    Pointer::park();
    QTRY_COMPARE(went.count(), 1);
    QCOMPARE(came.count(), 1);
}

void OverlayControlsTest::previewButtonIgnoresOtherObjects()
{
    TransPrewBtn button;
    QWidget other;
    other.installEventFilter(&button);
    QSignalSpy toggled(&button, &TransPrewBtn::sigHandleCapture);
    QSignalSpy came(&button, &TransPrewBtn::sigShowPreviewTip);
    QSignalSpy went(&button, &TransPrewBtn::sigHidePreviewTip);
    QTest::mouseClick(&other, Qt::LeftButton);
    for (const QEvent::Type type : {QEvent::Enter, QEvent::Leave}) {
        QEvent event(type);
        QCoreApplication::sendEvent(&other, &event);
    }
    QCOMPARE(toggled.count() + came.count() + went.count(), 0);
}

QTEST_MAIN(OverlayControlsTest)
#include "OverlayControlsTest.moc"
