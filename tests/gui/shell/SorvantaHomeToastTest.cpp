#include "LogCapture.h"
#include "ShownHome.h"
#include "ToastDialog.h"

#include <memory>
#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QtTest>

/// The toasts of the main window.
class SorvantaHomeToastTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void noToastIsShownAtFirst();
    void toastShowsItsTextInTheMiddleOfTheWindow();
    void toastGoesAfterItsTime();
    void newToastReplacesThePreviousOne();
    void emptyTextKeepsThePreviousToast();
    void emptyTextShowsNothing();
    void newToastHasItsFullTime();
    void textIsLogged();

private:
    [[nodiscard]] QList<ToastDialog*> toasts() const
    {
        return m_home->window().findChildren<ToastDialog*>();
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeToastTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>();
    QVERIFY(m_home->isPlaced());
}

void SorvantaHomeToastTest::cleanup()
{
    m_home.reset();
    m_log.reset();
}

void SorvantaHomeToastTest::noToastIsShownAtFirst()
{
    QCOMPARE(toasts().size(), 1);
    QVERIFY(!toasts().first()->isVisible());
    QVERIFY(!toasts().first()->isRunning());
}

void SorvantaHomeToastTest::toastShowsItsTextInTheMiddleOfTheWindow()
{
    m_home->window().move(210, 120);
    QTRY_COMPARE(m_home->window().pos(), QPoint(210, 120));
    m_home->window().showToast(QStringLiteral("Save successfully"));
    QCOMPARE(toasts().size(), 1);
    const ToastDialog* toast = toasts().first();
    QVERIFY(toast->isVisible());
    QCOMPARE(toast->findChild<QLabel*>(QStringLiteral("ContentLab"))->text(),
             QStringLiteral("Save successfully"));
    QCOMPARE(toast->x(), 210 + (360 - toast->width()) / 2);
    QCOMPARE(toast->y(), 120 + (680 - toast->height()) / 2);
}

void SorvantaHomeToastTest::toastGoesAfterItsTime()
{
    m_home->window().showToast(QStringLiteral("text"));
    const ToastDialog* toast = toasts().first();
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY(!toast->isVisible());
    QVERIFY2(clock.elapsed() >= 660, qPrintable(QString::number(clock.elapsed())));
    QVERIFY2(clock.elapsed() < 1400, qPrintable(QString::number(clock.elapsed())));
}

void SorvantaHomeToastTest::newToastReplacesThePreviousOne()
{
    m_home->window().showToast(QStringLiteral("first"));
    const QPointer<ToastDialog> first = toasts().first();
    m_home->window().showToast(QStringLiteral("second"));
    QVERIFY(first.isNull());
    QCOMPARE(toasts().size(), 1);
    QVERIFY(toasts().first()->isVisible());
    QCOMPARE(toasts().first()->findChild<QLabel*>()->text(), QStringLiteral("second"));
}

void SorvantaHomeToastTest::emptyTextKeepsThePreviousToast()
{
    m_home->window().showToast(QStringLiteral("first"));
    const QPointer<ToastDialog> first = toasts().first();
    m_home->window().showToast(QString());
    QCOMPARE(toasts(), QList<ToastDialog*>{first});
    QVERIFY(first->isVisible());
    QCOMPARE(first->findChild<QLabel*>()->text(), QStringLiteral("first"));
}

void SorvantaHomeToastTest::emptyTextShowsNothing()
{
    const QPointer<ToastDialog> before = toasts().first();
    m_home->window().showToast(QStringLiteral(""));
    QCOMPARE(toasts(), QList<ToastDialog*>{before});
    QVERIFY(!before->isVisible());
}

void SorvantaHomeToastTest::newToastHasItsFullTime()
{
    m_home->window().showToast(QStringLiteral("first"));
    QTest::qWait(400);
    m_home->window().showToast(QStringLiteral("second"));
    QTest::qWait(450); // the time of the first toast is over
    QVERIFY(toasts().first()->isVisible());
    QTRY_VERIFY(!toasts().first()->isVisible());
}

void SorvantaHomeToastTest::textIsLogged()
{
    m_home->window().showToast(QStringLiteral("text"));
    QVERIFY(m_log->contains(QStringLiteral("showToast \"text\"")));
}

QTEST_MAIN(SorvantaHomeToastTest)
#include "SorvantaHomeToastTest.moc"
