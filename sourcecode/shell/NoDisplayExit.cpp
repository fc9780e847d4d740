#include "NoDisplayExit.h"

#include <cstdio>
#include <cstdlib>
#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <vector>

namespace {

/// A message that waits until it is known whether the start succeeds. The pointers are those of the
/// log call: string literals.
struct Message
{
    QtMsgType type;
    const char* file;
    int line;
    const char* function;
    const char* category;
    QString text;
};

// Qt's message handler is a plain function and has no other way to what it needs.
QtMessageHandler s_previous = nullptr;

std::vector<Message>& waiting()
{
    static std::vector<Message> messages;
    return messages;
}

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type != QtFatalMsg) {
        waiting().push_back(
            {type, context.file, context.line, context.function, context.category, text});
        return;
    }
    const QByteArray display = qgetenv("DISPLAY");
    const QByteArray reason = display.isEmpty()
                                  ? QByteArrayLiteral("DISPLAY is not set")
                                  : "the display \"" + display + "\" cannot be opened";
    std::fprintf(stderr, "MarvikTools cannot start: it needs a graphical desktop, and %s.\n",
                 reason.constData());
    // Not exit(): it would destroy static objects while the application object is under
    // construction.
    std::_Exit(EXIT_FAILURE);
}

} // namespace

NoDisplayExit::NoDisplayExit()
{
    s_previous = qInstallMessageHandler(&handle);
}

NoDisplayExit::~NoDisplayExit()
{
    qInstallMessageHandler(s_previous);
    for (const Message& message : waiting())
        s_previous(message.type, {message.file, message.line, message.function, message.category},
                   message.text);
    waiting().clear();
}
