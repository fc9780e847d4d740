#include "ToastDialog.h"
#include "LogCapture.h"
#include "OnScreen.h"

#include <memory>
#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QLabel>
#include <QtMath>
#include <QtTest>
#include <vector>

namespace {

constexpr QRect kParentPlace(300, 200, 361, 501);

} // namespace

/// A toast over a separate window.
class ToastDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isATranslucentToolWindowOnTop();
    void isShownForItsTime();
    void animationRunsFromStartToEnd();
    void shortTextDecidesTheWidth();
    void textThatFitsStaysInOneLine();
    void longTextIsLimitedAndWraps();
    void liesInTheMiddleOfItsParent_data();
    void liesInTheMiddleOfItsParent();
    void sizesAndPlaceAreLogged();
    void markupIsShownAsItIs();
    void doesNotTakeTheFocus();

private:
    [[nodiscard]] const QLabel* label() const
    {
        return m_toast->findChild<QLabel*>(QStringLiteral("ContentLab"));
    }
    [[nodiscard]] int widthOf(const QString& text) const
    {
        const QFontMetricsF metrics(label()->font());
        return qCeil(metrics.horizontalAdvance(text) +
                     qMax(qreal(0), -metrics.rightBearing(text.back())));
    }
    void start(const QString& text)
    {
        m_toast->show();
        m_toast->Start(text, 5000);
    }

    std::unique_ptr<QWidget> m_parent;
    ToastDialog* m_toast = nullptr;
};

void ToastDialogTest::init()
{
    m_parent = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    m_parent->setGeometry(kParentPlace);
    m_parent->show();
    QVERIFY(QTest::qWaitForWindowActive(m_parent.get()));
    QTRY_COMPARE(m_parent->geometry(), kParentPlace);
    m_toast = new ToastDialog(m_parent.get());
}

void ToastDialogTest::cleanup()
{
    m_parent.reset();
}

void ToastDialogTest::isATranslucentToolWindowOnTop()
{
    QVERIFY(m_toast->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_toast->windowFlags(),
             Qt::WindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint));
    QCOMPARE(uint(m_toast->windowFlags()), 0x4080BU | uint(Qt::Window));
    QVERIFY(!m_toast->isVisible());
}

void ToastDialogTest::isShownForItsTime()
{
    struct Case
    {
        int msec;
        int shown;
        qint64 measured;
    };
    std::vector<Case> cases{{0, 1500, 0}, {-5, 1500, 0}, {700, 700, 0}, {1, 1, 0}};
    QElapsedTimer clock;
    for (Case& now : cases) {
        auto* toast = new ToastDialog(m_parent.get());
        connect(toast, &ToastDialog::sigClose, this, [&now, &clock, toast] {
            now.measured = clock.elapsed();
            QVERIFY(!toast->isVisible());
        });
        toast->show();
    }
    clock.start();
    const auto toasts = m_parent->findChildren<ToastDialog*>();
    for (std::size_t i = 0; i < cases.size(); ++i)
        toasts.at(static_cast<int>(i) + 1)->Start(QStringLiteral("text"), cases.at(i).msec);
    QTRY_VERIFY_WITH_TIMEOUT(cases.at(0).measured > 0 && cases.at(1).measured > 0, 8000);
    for (const Case& now : cases) {
        // A coarse timer may be a twentieth early, a busy machine late.
        QVERIFY2(now.measured >= now.shown * 95 / 100, qPrintable(QString::number(now.measured)));
        QVERIFY2(now.measured < now.shown + 600, qPrintable(QString::number(now.measured)));
    }
}

void ToastDialogTest::animationRunsFromStartToEnd()
{
    QVERIFY(!m_toast->isRunning());
    m_toast->show();
    QVERIFY(!m_toast->isRunning());
    m_toast->Start(QStringLiteral("text"), 50);
    QVERIFY(m_toast->isRunning());
    QTRY_VERIFY(!m_toast->isVisible());
    QVERIFY(!m_toast->isRunning());
}

void ToastDialogTest::shortTextDecidesTheWidth()
{
    const QString text = QStringLiteral("Save successfully");
    start(text);
    QVERIFY(widthOf(text) < 360);
    QCOMPARE(label()->text(), text);
    QCOMPARE(label()->width(), widthOf(text));
    QCOMPARE(m_toast->width(), label()->width() + 64);
    QCOMPARE(m_toast->height(), label()->height() + 26);
}

/// Texts of many widths, whatever fraction of a pixel they end with.
void ToastDialogTest::textThatFitsStaysInOneLine()
{
    start(QStringLiteral("A"));
    const int oneLine = label()->height();
    QString text;
    for (const QChar next : QStringLiteral("Camera is in use by other app, try it again")) {
        text += next;
        if (next.isSpace())
            continue;
        start(text);
        QVERIFY(label()->width() < 360);
        QVERIFY2(label()->height() == oneLine, qPrintable(text));
    }
}

void ToastDialogTest::longTextIsLimitedAndWraps()
{
    start(QStringLiteral("A"));
    const int oneLine = label()->height();
    const QString text =
        QStringLiteral("The camera is in use by another application. ").repeated(4);
    start(text);
    QVERIFY(widthOf(text) > 360);
    QCOMPARE(label()->width(), 360);
    QCOMPARE(m_toast->width(), 424);
    QVERIFY(label()->height() > oneLine);
    QCOMPARE(m_toast->height(), label()->height() + 26);
}

void ToastDialogTest::liesInTheMiddleOfItsParent_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("short") << QStringLiteral("Update Complete");
    QTest::newRow("Chinese") << QStringLiteral("更新失败，请重试");
    QTest::newRow("wider than the parent") << QStringLiteral("long ").repeated(60);
}

void ToastDialogTest::liesInTheMiddleOfItsParent()
{
    QFETCH(const QString, text);
    start(text);
    const int x = 300 + (361 - 64 - label()->width()) / 2;
    const int y = 200 + (501 - (label()->height() + 26)) / 2;
    QCOMPARE(m_toast->geometry().topLeft(), QPoint(x, y));
    QVERIFY(QTest::qWaitForWindowExposed(m_toast));
    QTRY_COMPARE(OnScreen::placeOf(*m_toast).topLeft(), QPoint(x, y));
}

void ToastDialogTest::sizesAndPlaceAreLogged()
{
    const LogCapture log;
    start(QStringLiteral("text"));
    const QRect place = m_toast->geometry();
    const auto line = [](const char* format, int value) {
        return QString::fromLatin1(format).arg(value);
    };
    QVERIFY(log.contains(line("wid = %1", widthOf(QStringLiteral("text")))));
    QVERIFY(log.contains(line("ui->ContentLab->width() = %1", label()->width())));
    QVERIFY(log.contains(line("width = %1 ", place.width()) + line("height = %1", place.height())));
    QVERIFY(log.contains(line("x = %1 ", place.x()) + line("y = %1", place.y())));
}

void ToastDialogTest::markupIsShownAsItIs()
{
    const QString text = QStringLiteral("<b>bold</b> &amp; <img src=x>");
    start(text);
    QCOMPARE(label()->textFormat(), Qt::PlainText);
    QCOMPARE(label()->text(), text);
    QCOMPARE(label()->width(), widthOf(text));
}

void ToastDialogTest::doesNotTakeTheFocus()
{
    start(QStringLiteral("text"));
    QVERIFY(QTest::qWaitForWindowExposed(m_toast));
    QTest::qWait(50);
    QVERIFY(m_parent->isActiveWindow());
}

QTEST_MAIN(ToastDialogTest)
#include "ToastDialogTest.moc"
