#include "AboutPage.h"
#include "LocalService.h"
#include "LogCapture.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

/// Replaces the desktop's browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    QList<QUrl> opened;

public slots:
    void open(const QUrl& url) { opened.append(url); }
};

/// Version, hash code and links of the program.
class AboutPageTest : public QObject
{
    Q_OBJECT

private slots:
    void showsAPlaceholderBeforeTheVersionIsKnown();
    void showsVersionAndHashCode();
    void laterVersionReplacesTheFirst();
    void logsTheBodyOfACheck();
    void updateButtonShowsTheToastAndSendsNoRequest();
    void linksOpenInTheBrowser();

private:
    static void click(const AboutPage& page, const char* name)
    {
        QTest::mouseClick(page.findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }
    static QString version(const AboutPage& page)
    {
        return page.findChild<QLabel*>(QStringLiteral("labVersionCode"))->text();
    }
};

void AboutPageTest::showsAPlaceholderBeforeTheVersionIsKnown()
{
    const AboutPage page;
    QCOMPARE(version(page), QStringLiteral("Verison：V1.0.0(1e2a3b)"));
    QCOMPARE(page.windowTitle(), QStringLiteral("Form"));
    const auto button = [&page](const char* name) {
        return page.findChild<QPushButton*>(QLatin1String(name))->text();
    };
    QCOMPARE(button("btnCheckUpdate"), QStringLiteral("Check Update"));
    QCOMPARE(button("btnServiceAgreement"), QStringLiteral("Terms of Service "));
    QCOMPARE(button("btnPrivacyPolicy"), QStringLiteral(" Privacy Policy"));
    QCOMPARE(page.findChild<QLabel*>(QStringLiteral("label_4"))->text(), QStringLiteral("and"));
}

void AboutPageTest::showsVersionAndHashCode()
{
    AboutPage page;
    page.setHashCode(QStringLiteral("9f8e7d"));
    QCOMPARE(version(page), QStringLiteral("Verison：V1.0.0(1e2a3b)"));
    page.setVersion(QStringLiteral("1.2.3"));
    QCOMPARE(version(page), QStringLiteral("Version：V1.2.3(9f8e7d)"));
}

void AboutPageTest::laterVersionReplacesTheFirst()
{
    AboutPage page;
    page.setHashCode(QStringLiteral("aaa"));
    page.setVersion(QStringLiteral("1"));
    page.setHashCode(QStringLiteral("bbb"));
    page.setVersion(QString());
    QCOMPARE(version(page), QStringLiteral("Version：V(bbb)"));
}

void AboutPageTest::logsTheBodyOfACheck()
{
    AboutPage page;
    const LogCapture log;
    page.setVersion(QStringLiteral("1\"2"));
    QCOMPARE(log.texts().size(), 1);
    // The log adds these quotes.
    QVERIFY(log.texts().constFirst().contains(QStringLiteral("SCW")));
    QVERIFY(log.texts().constFirst().contains(QStringLiteral("1\\\"2")));
}

void AboutPageTest::updateButtonShowsTheToastAndSendsNoRequest()
{
    const LocalService service;
    QVERIFY(service.isRunning());
    AboutPage page;
    page.setVersion(QStringLiteral("1.0.0"));
    const QSignalSpy toast(&page, &AboutPage::sigShowToast);
    click(page, "btnCheckUpdate");
    QCOMPARE(toast.size(), 1);
    click(page, "btnCheckUpdate");
    QCOMPARE(toast.size(), 2);
    for (const QList<QVariant>& arguments : toast)
        QCOMPARE(arguments.at(0).toString(), QStringLiteral("Software is up to date"));
    QTest::qWait(200);
    QVERIFY(service->requests().isEmpty());
}

void AboutPageTest::linksOpenInTheBrowser()
{
    const Browser browser;
    const AboutPage page;
    click(page, "btnServiceAgreement");
    click(page, "btnPrivacyPolicy");
    QCOMPARE(browser.opened, (QList<QUrl>{QUrl(QStringLiteral("https://test.invalid/terms")),
                                          QUrl(QStringLiteral("https://test.invalid/privacy"))}));
}

QTEST_MAIN(AboutPageTest)
#include "AboutPageTest.moc"
