#include "WindowSystem.h"
#include "FontSubstitutes.h"
#include "HighDpi.h"
#include "WindowSystemChoice.h"

#include <QFont>
#include <QtTest>

/// Properties of the desktop that are read before the application object exists.
class WindowSystemTest : public QObject
{
    Q_OBJECT

private slots:
    void monitorIsMeasuredInPixels();
    void widthOfTheMonitorDecidesAboutScaling();
    void monitorOfNoDesktopIsUnknown();
    void xServerIsPreferredUnderWayland_data();
    void xServerIsPreferredUnderWayland();
    void glIsNotLoadedUnlessTheUserWantsIt();
    void fontsOfTheFormsHaveSubstitutes();

private:
    static int expectedWidth() { return qEnvironmentVariableIntValue("MARVIK_EXPECTED_WIDTH"); }
};

void WindowSystemTest::monitorIsMeasuredInPixels()
{
    QVERIFY(expectedWidth() > 0);
    QCOMPARE(WindowSystem::monitorWidth().value_or(-1), expectedWidth());
}

void WindowSystemTest::widthOfTheMonitorDecidesAboutScaling()
{
    QCOMPARE(HighDpi::wantsScaling(WindowSystem::monitorWidth()), expectedWidth() == 2048);
}

void WindowSystemTest::monitorOfNoDesktopIsUnknown()
{
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":99999");
    const bool known = WindowSystem::monitorWidth().has_value();
    qputenv("DISPLAY", display);
    QVERIFY(!known);
}

void WindowSystemTest::xServerIsPreferredUnderWayland_data()
{
    QTest::addColumn<QByteArray>("chosen");
    QTest::addColumn<QByteArray>("wayland");
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<QByteArray>("platform");
    QTest::newRow("both") << QByteArray() << QByteArray("wayland-0") << QByteArray(":0")
                          << QByteArray("xcb");
    QTest::newRow("X only") << QByteArray() << QByteArray() << QByteArray(":0") << QByteArray();
    QTest::newRow("Wayland only") << QByteArray() << QByteArray("wayland-0") << QByteArray()
                                  << QByteArray();
    QTest::newRow("the user's choice") << QByteArray("offscreen") << QByteArray("wayland-0")
                                       << QByteArray(":0") << QByteArray("offscreen");
}

void WindowSystemTest::xServerIsPreferredUnderWayland()
{
    QFETCH(const QByteArray, chosen);
    QFETCH(const QByteArray, wayland);
    QFETCH(const QByteArray, display);
    const char* const names[] = {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"};
    QMap<QByteArray, QByteArray> before;
    for (const char* name : names)
        before.insert(name, qgetenv(name));
    qputenv(names[0], chosen);
    qputenv(names[1], wayland);
    qputenv(names[2], display);
    QByteArray platform;
    {
        const WindowSystemChoice choice;
        platform = qgetenv(names[0]);
    }
    const QByteArray after = qgetenv(names[0]);
    for (const char* name : names)
        qputenv(name, before.value(name));
    QTEST(platform, "platform");
    QCOMPARE(after, chosen);
}

void WindowSystemTest::glIsNotLoadedUnlessTheUserWantsIt()
{
    const char* const name = "QT_XCB_GL_INTEGRATION";
    qunsetenv(name);
    {
        const WindowSystemChoice choice;
        QCOMPARE(qgetenv(name), QByteArray("none"));
    }
    QVERIFY(!qEnvironmentVariableIsSet(name));

    qputenv(name, "xcb_egl");
    {
        const WindowSystemChoice choice;
        QCOMPARE(qgetenv(name), QByteArray("xcb_egl"));
    }
    QCOMPARE(qgetenv(name), QByteArray("xcb_egl"));
    qunsetenv(name);
}

void WindowSystemTest::fontsOfTheFormsHaveSubstitutes()
{
    FontSubstitutes::install();
    for (const char* family : {"Microsoft YaHei UI", "Microsoft YaHei"})
        QVERIFY(QFont::substitutes(QLatin1String(family))
                    .contains(QLatin1String("Noto Sans CJK SC"), Qt::CaseInsensitive));
}

QTEST_GUILESS_MAIN(WindowSystemTest)
#include "WindowSystemTest.moc"
