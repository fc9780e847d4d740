#include "SvtaStartPage.h"

#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QtTest>

/// The start animation.
class SvtaStartPageTest : public QObject
{
    Q_OBJECT

private slots:
    void animationFillsThePageAndRuns();
    void pageHasItsColour();
};

void SvtaStartPageTest::animationFillsThePageAndRuns()
{
    SvtaStartPage page;
    const auto labels = page.findChildren<QLabel*>();
    QCOMPARE(labels.size(), 1);
    const QMovie* movie = labels.first()->movie();
    QVERIFY(movie);
    QCOMPARE(movie->fileName(), QStringLiteral(":images/startPageAnimal.gif"));
    QVERIFY(movie->isValid());
    QCOMPARE(movie->state(), QMovie::Running);
    QVERIFY(labels.first()->hasScaledContents());
    page.resize(360, 644);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QCOMPARE(labels.first()->geometry(), page.rect());
    const int frame = movie->currentFrameNumber();
    QTRY_VERIFY(movie->currentFrameNumber() != frame);
}

void SvtaStartPageTest::pageHasItsColour()
{
    SvtaStartPage page;
    QVERIFY(page.styleSheet().contains(QLatin1String("#004DA6")));
    page.resize(360, 644);
    QCOMPARE(page.grab().toImage().pixelColor(3, 3), QColor(0x00, 0x4D, 0xA6));
}

QTEST_MAIN(SvtaStartPageTest)
#include "SvtaStartPageTest.moc"
