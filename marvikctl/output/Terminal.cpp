#include "Terminal.h"

#include "Console.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kGap = 2;

FILE* fileOf(Terminal::Stream stream)
{
    return stream == Terminal::Stream::Output ? stdout : stderr;
}

} // namespace

Terminal Terminal::ofThisProcess()
{
    // See https://no-color.org: any value but the empty one.
    const bool mayColour = qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
    return Terminal(mayColour && Console::isTerminal(stdout),
                    mayColour && Console::isTerminal(stderr));
}

void Terminal::line(Stream stream, const QString& text, Colour colour) const
{
    const bool isColoured = stream == Stream::Output ? m_isColouredOutput : m_isColouredError;
    bytes(stream, (isColoured ? coloured(text, colour) : text).toUtf8() + '\n');
}

void Terminal::bytes(Stream stream, const QByteArray& bytes) const
{
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), fileOf(stream));
    std::fflush(fileOf(stream));
}

void Terminal::table(const QList<QStringList>& rows, const QString& indent) const
{
    const QStringList lines = aligned(rows);
    for (const QString& each : lines)
        line(Stream::Output, indent + each);
}

QString Terminal::coloured(const QString& text, Colour colour)
{
    const char* sequence = nullptr;
    switch (colour) {
    case Colour::None:
        return text;
    case Colour::Red:
        sequence = "31";
        break;
    case Colour::Green:
        sequence = "32";
        break;
    case Colour::Yellow:
        sequence = "33";
        break;
    case Colour::Bold:
        sequence = "1";
        break;
    }
    return QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QString::fromLatin1(sequence), text);
}

QStringList Terminal::aligned(const QList<QStringList>& rows)
{
    QList<int> widths;
    for (const QStringList& row : rows) {
        // A row of one cell is a line of its own and widens no column.
        for (int i = 0; i + 1 < row.size(); ++i) {
            if (i == widths.size())
                widths.append(0);
            widths[i] = std::max(widths.at(i), row.at(i).size());
        }
    }
    QStringList lines;
    for (const QStringList& row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i)
            line += i + 1 < row.size() ? row.at(i).leftJustified(widths.at(i) + kGap) : row.at(i);
        lines << line;
    }
    return lines;
}
