#pragma once

#include <ostream>
#include <QByteArray>
#include <QSize>
#include <QString>

// Lets GoogleTest print Qt's values in failure messages.

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out)
{
    *out << bytes.size() << " bytes " << bytes.toHex(' ').constData();
}

inline void PrintTo(const QSize& size, std::ostream* out)
{
    *out << size.width() << 'x' << size.height();
}
