#include "SvtaMessageDialog.h"

#include <QApplication>
#include <QProcess>
#include <QScreen>
#include <QtTest>
#include <QWindow>

namespace {

constexpr QSize kPrimary(800, 600);
constexpr QSize kSecond(1280, 1024);

/// An X server with two screens of different sizes.
class TwoScreens
{
public:
    TwoScreens()
    {
        m_server.setStandardErrorFile(QProcess::nullDevice());
        m_server.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"),
                        QStringLiteral("-screen"), QStringLiteral("0"), sizeText(kPrimary),
                        QStringLiteral("-screen"), QStringLiteral("1"), sizeText(kSecond),
                        QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        QByteArray number;
        while (!number.endsWith('\n') && m_server.waitForReadyRead(20000))
            number += m_server.readAllStandardOutput();
        qputenv("DISPLAY", ':' + number.trimmed());
    }
    ~TwoScreens()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }
    TwoScreens(const TwoScreens&) = delete;
    TwoScreens& operator=(const TwoScreens&) = delete;

private:
    static QString sizeText(const QSize& size)
    {
        return QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height());
    }

    QProcess m_server;
};

} // namespace

/// Dialogs where there is more than one screen.
class TwoScreensTest : public QObject
{
    Q_OBJECT

private slots:
    void dialogOfAWindowOnTheSecondScreenIsCentredOnThePrimaryOne();
};

void TwoScreensTest::dialogOfAWindowOnTheSecondScreenIsCentredOnThePrimaryOne()
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    QCOMPARE(screens.size(), 2);
    QCOMPARE(QGuiApplication::primaryScreen()->size(), kPrimary);
    QScreen* second = screens.at(screens.at(0) == QGuiApplication::primaryScreen() ? 1 : 0);
    QCOMPARE(second->size(), kSecond);

    QWidget window;
    window.setGeometry(700, 500, 360, 480);
    window.createWinId();
    window.windowHandle()->setScreen(second);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.screen(), second);

    SvtaMessageDialog dialog(&window);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.pos(), QPoint(800 / 2 - 280 / 2, 600 / 2 - 156 / 2));
    dialog.resize(300, 200);
    QTRY_COMPARE(dialog.pos(), QPoint(800 / 2 - 300 / 2, 600 / 2 - 200 / 2));
}

int main(int argc, char** argv)
{
    const TwoScreens screens;
    QApplication application(argc, argv);
    TwoScreensTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TwoScreensTest.moc"
