#include "SvtaSupportedProductDialog.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QtTest>

/// The list of supported products.
class SvtaSupportedProductDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void isFramelessAndSeeThrough();
    void isKnownByItsName();
    void listsTwoGroups();
    void panelHasRoundedTopCorners();
    void closeButtonHidesIt();

private:
    static QString text(const QWidget& dialog, const char* label)
    {
        return dialog.findChild<QLabel*>(QLatin1String(label))->text();
    }
};

void SvtaSupportedProductDialogTest::isFramelessAndSeeThrough()
{
    const SvtaSupportedProductDialog dialog;
    QCOMPARE(dialog.windowFlags(), Qt::WindowFlags(Qt::Dialog | Qt::FramelessWindowHint));
    QCOMPARE(uint(dialog.windowFlags()), 0x803U);
    QVERIFY(dialog.testAttribute(Qt::WA_TranslucentBackground));
}

void SvtaSupportedProductDialogTest::isKnownByItsName()
{
    QCOMPARE(SvtaSupportedProductDialog().objectName(),
             QStringLiteral("SvtaSupportedProductDialog"));
}

void SvtaSupportedProductDialogTest::listsTwoGroups()
{
    const SvtaSupportedProductDialog dialog;
    QCOMPARE(text(dialog, "labTitle"), QStringLiteral("支持设备"));
    QCOMPARE(text(dialog, "labUsbCamera"), QStringLiteral("USB相机"));
    QCOMPARE(text(dialog, "labBiasedCamera"), QStringLiteral("桌面会议一体机"));
    QStringList texts;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        texts << label->text();
    QCOMPARE(texts.count(QStringLiteral("Vexa Cam")), 1);
    QCOMPARE(texts.count(QStringLiteral("Vexa Studio")), 1);
    const auto* area = dialog.findChild<QScrollArea*>();
    QVERIFY(area);
    QVERIFY(area->widget()->findChild<QLabel*>(QStringLiteral("labUsbCamera")));
    QVERIFY(area->widget()->findChild<QLabel*>(QStringLiteral("labBiasedCamera")));
}

void SvtaSupportedProductDialogTest::panelHasRoundedTopCorners()
{
    const SvtaSupportedProductDialog dialog;
    for (const char* part : {"border-top-left-radius: 12px", "border-top-right-radius: 12px",
                             "#labTitle { font-size: 16px; font-weight: 500; }"})
        QVERIFY2(dialog.styleSheet().contains(QLatin1String(part)), part);
}

void SvtaSupportedProductDialogTest::closeButtonHidesIt()
{
    SvtaSupportedProductDialog dialog;
    auto* close = dialog.findChild<QPushButton*>(QStringLiteral("btnClose"));
    QVERIFY(close->styleSheet().contains(QLatin1String("image: url(:/images/close.svg);")));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
}

QTEST_MAIN(SvtaSupportedProductDialogTest)
#include "SvtaSupportedProductDialogTest.moc"
