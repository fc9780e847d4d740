#include "MaskForm.h"
#include "OnScreen.h"
#include "Pointer.h"

#include <memory>
#include <QDialog>
#include <QtTest>

namespace {

constexpr QRect kCovered(301, 151, 361, 601);

/// Counts the events of a type that reach an object.
class EventCounter : public QObject
{
public:
    EventCounter(QObject* watched, QEvent::Type type)
        : m_type(type)
    {
        watched->installEventFilter(this);
    }
    [[nodiscard]] int count() const { return m_count; }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == m_type ? 1 : 0;
        return false;
    }

private:
    QEvent::Type m_type;
    int m_count = 0;
};

} // namespace

/// The dimming layer between a window and a dialog.
class MaskFormTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isAHalfTransparentBlackToolWindow();
    void coversTheActiveWindowByDefault();
    void coversTheWholeWindowOfAPage();
    void nullIsIgnoredAsCoveredWidget();
    void nullIsIgnoredAsDialog();

    void isShownAndHiddenWithItsDialog();
    void coversTheWindowExactly();
    void coversTheWindowAtAnyPosition();
    void dialogIsCentredOnTheWindow();
    void listOfSupportedProductsIsAtTheBottom();
    void dialogIsPlacedAgainAtEveryShow();
    void rememberingADialogTwiceChangesNothing();
    void followsTheDialogRememberedLast();
    void deletedDialogIsForgotten();
    void eventsReachTheDialog();
    void dialogStaysAboveAfterAClickOnTheMask();

private:
    [[nodiscard]] std::unique_ptr<QDialog> makeDialog(const QSize& size = {280, 156}) const;

    std::unique_ptr<QWidget> m_window;
    MaskForm* m_mask = nullptr;
};

void MaskFormTest::init()
{
    Pointer::park();
    m_window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    m_window->setGeometry(kCovered);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTRY_COMPARE(m_window->geometry(), kCovered);
    m_mask = new MaskForm(m_window.get());
}

void MaskFormTest::cleanup()
{
    m_window.reset();
}

std::unique_ptr<QDialog> MaskFormTest::makeDialog(const QSize& size) const
{
    auto dialog = std::make_unique<QDialog>(m_window.get(), Qt::Dialog | Qt::FramelessWindowHint);
    dialog->setModal(true);
    dialog->setFixedSize(size);
    return dialog;
}

void MaskFormTest::isAHalfTransparentBlackToolWindow()
{
    QCOMPARE(m_mask->windowFlags(), Qt::WindowFlags(Qt::Tool | Qt::FramelessWindowHint));
    QVERIFY(qAbs(m_mask->windowOpacity() - 0.5) < 0.01);
    for (const QPalette::ColorGroup group :
         {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(m_mask->palette().color(group, QPalette::Window), QColor(0, 0, 0, 255));
    QVERIFY(!m_mask->isVisible());
}

void MaskFormTest::coversTheActiveWindowByDefault()
{
    MaskForm mask;
    mask.show();
    QCOMPARE(mask.geometry(), kCovered);
}

void MaskFormTest::coversTheWholeWindowOfAPage()
{
    QWidget page(m_window.get());
    page.setGeometry(0, 80, 300, 200);
    m_mask->setCoveredWidget(&page);
    m_mask->show();
    QCOMPARE(m_mask->geometry(), kCovered);
}

void MaskFormTest::nullIsIgnoredAsCoveredWidget()
{
    m_mask->setCoveredWidget(m_window.get());
    m_mask->setCoveredWidget(nullptr);
    m_mask->show();
    QCOMPARE(m_mask->geometry(), kCovered);
}

void MaskFormTest::nullIsIgnoredAsDialog()
{
    const auto dialog = makeDialog();
    m_mask->follow(dialog.get());
    m_mask->follow(nullptr);
    dialog->show();
    QVERIFY(m_mask->isVisible());
}

void MaskFormTest::isShownAndHiddenWithItsDialog()
{
    const auto dialog = makeDialog();
    m_mask->follow(dialog.get());
    QVERIFY(!m_mask->isVisible());
    for (int round = 0; round < 2; ++round) {
        dialog->show();
        QVERIFY(m_mask->isVisible());
        dialog->hide();
        QVERIFY(!m_mask->isVisible());
    }
}

void MaskFormTest::coversTheWindowExactly()
{
    const auto dialog = makeDialog();
    m_mask->follow(dialog.get());
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_mask));
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QTest::qWait(50); // until the window manager may have moved it
    QCOMPARE(OnScreen::placeOf(*m_mask), kCovered);
}

void MaskFormTest::coversTheWindowAtAnyPosition()
{
    const auto dialog = makeDialog();
    m_mask->follow(dialog.get());
    dialog->show();
    dialog->hide();
    m_window->move(40, 60);
    QTRY_COMPARE(m_window->geometry().topLeft(), QPoint(40, 60));
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_mask));
    QTRY_COMPARE(OnScreen::placeOf(*m_mask), QRect(QPoint(40, 60), kCovered.size()));
    QTRY_COMPARE(OnScreen::placeOf(*dialog).topLeft(),
                 QPoint(40 + (361 - 280) / 2, 60 + (601 - 156) / 2));
}

void MaskFormTest::dialogIsCentredOnTheWindow()
{
    const auto dialog = makeDialog({251, 132});
    m_mask->follow(dialog.get());
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QTRY_COMPARE(OnScreen::placeOf(*dialog).topLeft(),
                 QPoint(301 + (361 - 251) / 2, 151 + (601 - 132) / 2));
}

void MaskFormTest::listOfSupportedProductsIsAtTheBottom()
{
    const auto dialog = makeDialog({360, 380});
    dialog->setObjectName(QStringLiteral("SvtaSupportedProductDialog"));
    m_mask->follow(dialog.get());
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QTRY_COMPARE(OnScreen::placeOf(*dialog).topLeft(),
                 QPoint(301 + (361 - 360) / 2, 151 + 601 - 380));
}

void MaskFormTest::dialogIsPlacedAgainAtEveryShow()
{
    const auto dialog = makeDialog();
    m_mask->follow(dialog.get());
    dialog->show();
    const QPoint place(301 + (361 - 280) / 2, 151 + (601 - 156) / 2);
    QCOMPARE(dialog->pos(), place);
    dialog->hide();
    dialog->move(0, 0);
    dialog->show();
    QCOMPARE(dialog->pos(), place);
}

void MaskFormTest::rememberingADialogTwiceChangesNothing()
{
    const auto dialog = makeDialog();
    m_mask->follow(dialog.get());
    const EventCounter shows(m_mask, QEvent::Show);
    m_mask->follow(dialog.get());
    dialog->show();
    QCOMPARE(shows.count(), 1);
}

void MaskFormTest::followsTheDialogRememberedLast()
{
    const auto first = makeDialog();
    const auto second = makeDialog();
    m_mask->follow(first.get());
    m_mask->follow(second.get());
    first->move(3, 4);
    first->show();
    QVERIFY(!m_mask->isVisible());
    QCOMPARE(first->pos(), QPoint(3, 4));
    second->show();
    QVERIFY(m_mask->isVisible());
    first->hide();
    QVERIFY(m_mask->isVisible());
    second->hide();
    QVERIFY(!m_mask->isVisible());
}

void MaskFormTest::deletedDialogIsForgotten()
{
    auto dialog = makeDialog();
    const auto other = makeDialog();
    m_mask->follow(dialog.get());
    dialog.reset();
    m_mask->setGeometry(7, 8, 90, 60);
    other->move(3, 4);
    other->show();
    QVERIFY(!m_mask->isVisible());
    other->hide();
    QCOMPARE(m_mask->geometry(), QRect(7, 8, 90, 60));
    m_mask->follow(other.get());
    other->show();
    QVERIFY(m_mask->isVisible());
}

void MaskFormTest::eventsReachTheDialog()
{
    const auto dialog = makeDialog();
    const EventCounter shows(dialog.get(), QEvent::Show);
    const EventCounter hides(dialog.get(), QEvent::Hide);
    m_mask->follow(dialog.get()); // its event filter runs before the counters'
    dialog->show();
    dialog->hide();
    QCOMPARE(shows.count(), 1);
    QCOMPARE(hides.count(), 1);
}

void MaskFormTest::dialogStaysAboveAfterAClickOnTheMask()
{
    const auto dialog = makeDialog();
    m_mask->follow(dialog.get());
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    const auto isAbove = [this, &dialog] {
        const QList<WId> order = OnScreen::stackingOrder();
        return order.contains(m_mask->winId()) &&
               order.indexOf(dialog->winId()) > order.indexOf(m_mask->winId()) &&
               order.indexOf(m_mask->winId()) > order.indexOf(m_window->winId());
    };
    QTRY_VERIFY(isAbove());
    Pointer::clickAt(kCovered.topLeft() + QPoint(20, 20));
    QTest::qWait(150);
    QVERIFY(isAbove());
    QVERIFY(dialog->isVisible());
}

QTEST_MAIN(MaskFormTest)
#include "MaskFormTest.moc"
