#include "InstanceMessage.h"
#include "QtPrinters.h"
#include "TestApplication.h"

#include <gtest/gtest.h>
#include <memory>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QTemporaryDir>

namespace {

constexpr int kMaxBytes = 64;

/// A sender and the receiver at the other end of its connection.
class InstanceMessageTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_server.listen(m_directory.filePath("socket")));
        sender.connectToServer(m_server.fullServerName());
        ASSERT_TRUE(sender.waitForConnected(2000));
        ASSERT_TRUE(m_server.waitForNewConnection(2000));
        receiver = new InstanceMessage(m_server.nextPendingConnection(), kMaxBytes, &m_server);
        QObject::connect(receiver, &InstanceMessage::received,
                         [this](const QByteArray& message) { received << message; });
    }

    void send(const QByteArray& bytes)
    {
        sender.write(bytes);
        sender.flush();
    }
    template <typename Condition>
    static bool waitFor(Condition condition, int timeoutMs = 1000)
    {
        QElapsedTimer clock;
        clock.start();
        while (!condition() && clock.elapsed() < timeoutMs) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        return condition();
    }
    bool isDropped()
    {
        return waitFor([this] { return sender.state() == QLocalSocket::UnconnectedState; });
    }
    bool isDeleted()
    {
        return waitFor([this] { return receiver.isNull(); });
    }

private:
    TestApplication m_application;
    QTemporaryDir m_directory;
    QLocalServer m_server;

protected:
    QLocalSocket sender;
    QPointer<InstanceMessage> receiver;
    QList<QByteArray> received;
};

} // namespace

TEST_F(InstanceMessageTest, MessageIsReceivedAndAcknowledged)
{
    send(QByteArray("raise_window_noop\0", 18));
    EXPECT_TRUE(waitFor([this] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QList<QByteArray>{"raise_window_noop"});
    EXPECT_TRUE(waitFor([this] { return sender.bytesAvailable() > 0; }));
    EXPECT_EQ(sender.readAll().size(), 1);
    EXPECT_TRUE(isDeleted());
    EXPECT_TRUE(isDropped());
}

TEST_F(InstanceMessageTest, MessageMayArriveInPieces)
{
    for (const char* piece : {"raise", "_window", "_noop"}) {
        send(piece);
        waitFor([] { return false; }, 20);
        EXPECT_TRUE(received.isEmpty());
    }
    send(QByteArray(1, '\0'));
    EXPECT_TRUE(waitFor([this] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QList<QByteArray>{"raise_window_noop"});
}

TEST_F(InstanceMessageTest, EmptyMessageIsAMessage)
{
    send(QByteArray(1, '\0'));
    EXPECT_TRUE(waitFor([this] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QList<QByteArray>{QByteArray()});
}

TEST_F(InstanceMessageTest, BytesAfterTheMessageAreIgnored)
{
    send(QByteArray("first\0second\0", 13));
    EXPECT_TRUE(isDeleted());
    EXPECT_EQ(received, QList<QByteArray>{"first"});
}

TEST_F(InstanceMessageTest, LongestMessageIsReceived)
{
    const QByteArray message(kMaxBytes, 'x');
    send(message + '\0');
    EXPECT_TRUE(waitFor([this] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QList<QByteArray>{message});
}

TEST_F(InstanceMessageTest, LongerMessageIsDropped)
{
    send(QByteArray(kMaxBytes + 1, 'x') + '\0');
    EXPECT_TRUE(isDropped());
    EXPECT_TRUE(isDeleted());
    EXPECT_TRUE(received.isEmpty());
    EXPECT_EQ(sender.readAll(), QByteArray());
}

TEST_F(InstanceMessageTest, FloodIsDroppedWithoutBeingRead)
{
    const QByteArray flood(8 * 1024 * 1024, 'x');
    sender.write(flood);
    EXPECT_TRUE(waitFor([this] { return sender.state() == QLocalSocket::UnconnectedState; }, 3000));
    EXPECT_TRUE(isDeleted());
    EXPECT_TRUE(received.isEmpty());
}

TEST_F(InstanceMessageTest, IncompleteMessageIsDropped)
{
    send("raise_window");
    waitFor([] { return false; }, 20);
    sender.abort();
    EXPECT_TRUE(isDeleted());
    EXPECT_TRUE(received.isEmpty());
}

TEST_F(InstanceMessageTest, SlowSenderIsDropped)
{
    QElapsedTimer clock;
    clock.start();
    // Single bytes do not extend the time-out.
    while (sender.state() == QLocalSocket::ConnectedState && clock.elapsed() < 5000) {
        send("x");
        waitFor([this] { return sender.state() != QLocalSocket::ConnectedState; }, 200);
    }
    EXPECT_EQ(sender.state(), QLocalSocket::UnconnectedState);
    EXPECT_GE(clock.elapsed(), 1850);
    EXPECT_LT(clock.elapsed(), 3500);
    EXPECT_TRUE(received.isEmpty());
    EXPECT_TRUE(isDeleted());
}

TEST_F(InstanceMessageTest, SilentSenderIsDropped)
{
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(waitFor([this] { return receiver.isNull(); }, 4000));
    EXPECT_GE(clock.elapsed(), 1850);
    EXPECT_TRUE(isDropped());
    EXPECT_TRUE(received.isEmpty());
}
