#include <cstdio>
#include <QCoreApplication>
#include <QLocalSocket>
#include <QStringList>

namespace {

constexpr int kReplyTimeoutMs = 5000;

int fail(const QString& text)
{
    std::fprintf(stderr, "updateservice-ctl: %s\n", qPrintable(text));
    return 1;
}

} // namespace

/// Sends one command to an update service, for scripts: updateservice-ctl SOCKET fault status 500
/// Prints the reply of the service.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().mid(1);
    if (words.size() < 2)
        return fail("usage: updateservice-ctl SOCKET command...");
    QLocalSocket socket;
    socket.connectToServer(words.takeFirst());
    if (!socket.waitForConnected(kReplyTimeoutMs))
        return fail("the service does not run");
    socket.write(words.join(QLatin1Char(' ')).toUtf8() + '\n');
    QByteArray reply;
    while (socket.waitForReadyRead(kReplyTimeoutMs))
        reply += socket.readAll();
    reply = reply.trimmed();
    if (reply != "ok" && !reply.startsWith("ok\n"))
        return fail(QString::fromUtf8(reply));
    std::puts(reply.mid(3).constData());
    return 0;
}
