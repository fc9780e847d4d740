#include "Style.h"

#include <cstring>

QString Style::colour(const char* name)
{
    for (const Colour& entry : kColours) {
        if (std::strcmp(entry.name, name) == 0)
            return QString::fromLatin1(entry.value);
    }
    Q_ASSERT_X(false, "Style::colour", name);
    return {};
}

QString Style::sheet(const char* styleSheet)
{
    QString result;
    QString name;
    bool inName = false;
    for (const QChar character : QString::fromUtf8(styleSheet) + QLatin1Char(' ')) {
        const bool belongs = character == QLatin1Char('-') ||
                             (character >= QLatin1Char('a') && character <= QLatin1Char('z'));
        if (inName && belongs) {
            name += character;
            continue;
        }
        if (inName)
            result += colour(name.toLatin1().constData());
        inName = character == QLatin1Char('@');
        name.clear();
        if (!inName)
            result += character;
    }
    result.chop(1); // the blank that ends a name at the end
    return result;
}
