#include "TerminationRequest.h"

#include <csignal>
#include <QSignalSpy>
#include <QtTest>

/// The system's request to end the program.
class TerminationRequestTest : public QObject
{
    Q_OBJECT

private slots:
    void signalBecomesARequest_data();
    void signalBecomesARequest();
    void severalSignalsMakeAtLeastOneRequest();
    void handlersAreRestored();
};

void TerminationRequestTest::signalBecomesARequest_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("terminate") << SIGTERM;
    QTest::newRow("interrupt") << SIGINT;
    QTest::newRow("hang up") << SIGHUP;
}

void TerminationRequestTest::signalBecomesARequest()
{
    QFETCH(const int, number);
    const TerminationRequest request;
    const QSignalSpy requested(&request, &TerminationRequest::requested);
    QCOMPARE(raise(number), 0);
    QVERIFY(requested.isEmpty()); // must not be emitted inside the handler
    QTRY_COMPARE(requested.size(), 1);
    QCOMPARE(raise(number), 0);
    QTRY_COMPARE(requested.size(), 2);
}

void TerminationRequestTest::severalSignalsMakeAtLeastOneRequest()
{
    const TerminationRequest request;
    const QSignalSpy requested(&request, &TerminationRequest::requested);
    for (int i = 0; i < 100000; ++i)
        raise(SIGTERM); // more than a pipe holds
    QTRY_VERIFY(!requested.isEmpty());
}

void TerminationRequestTest::handlersAreRestored()
{
    struct sigaction before = {};
    struct sigaction after = {};
    sigaction(SIGTERM, nullptr, &before);
    {
        const TerminationRequest request;
        sigaction(SIGTERM, nullptr, &after);
        QVERIFY(after.sa_handler != before.sa_handler);
    }
    sigaction(SIGTERM, nullptr, &after);
    QVERIFY(after.sa_handler == before.sa_handler);
}

QTEST_MAIN(TerminationRequestTest)
#include "TerminationRequestTest.moc"
