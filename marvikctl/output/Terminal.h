#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// Standard output and standard error, in UTF-8.
class Terminal
{
public:
    enum class Stream { Output, Error };
    enum class Colour { None, Red, Green, Yellow, Bold };

    /// @param isColoured for both streams
    explicit Terminal(bool isColouredOutput, bool isColouredError)
        : m_isColouredOutput(isColouredOutput)
        , m_isColouredError(isColouredError)
    {
    }
    /// Coloured where a stream is a terminal, unless NO_COLOR is set. Defined with isTerminal().
    [[nodiscard]] static Terminal ofThisProcess();

    void line(Stream stream, const QString& text, Colour colour = Colour::None) const;
    void bytes(Stream stream, const QByteArray& bytes) const;
    /// Rows with aligned columns; the last column is not padded.
    void table(const QList<QStringList>& rows, const QString& indent = {}) const;

    /// The text with the colour's sequences around it.
    [[nodiscard]] static QString coloured(const QString& text, Colour colour);
    /// The lines of table().
    [[nodiscard]] static QStringList aligned(const QList<QStringList>& rows);

private:
    bool m_isColouredOutput;
    bool m_isColouredError;
};
