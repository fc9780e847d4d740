#include "PackageFileName.h"

#include <algorithm>
#include <QStringList>

namespace {

constexpr int kMaxBytes = 255; // of a name, on the common file systems

/// Whether Windows opens a device for @p name; an extension makes no difference.
bool isReservedDevice(const QString& name)
{
    // Windows ignores blanks before the extension.
    const QString stem = name.section(QLatin1Char('.'), 0, 0).trimmed().toUpper();
    static const QStringList plainDevices{QStringLiteral("CON"),    QStringLiteral("PRN"),
                                          QStringLiteral("AUX"),    QStringLiteral("NUL"),
                                          QStringLiteral("CONIN$"), QStringLiteral("CONOUT$"),
                                          QStringLiteral("CLOCK$")};
    if (plainDevices.contains(stem))
        return true;
    const bool port =
        stem.startsWith(QLatin1String("COM")) || stem.startsWith(QLatin1String("LPT"));
    // Windows treats superscript digits as digits.
    static const QString portDigits = QStringLiteral("0123456789\u00B9\u00B2\u00B3");
    return port && stem.size() == 4 && portDigits.contains(stem.at(3));
}

/// Separators of any platform, and control characters.
bool isForbidden(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\') ||
           character.category() == QChar::Other_Control;
}

/// "C:name" is a file of the current folder of drive C on Windows.
bool hasDrive(const QString& name)
{
    return name.size() >= 2 && name.at(1) == QLatin1Char(':') && name.at(0).isLetter();
}

} // namespace

QString PackageFileName::fromUrl(const QString& url)
{
    return url.mid(url.lastIndexOf(QLatin1Char('/')) + 1);
}

bool PackageFileName::isPlain(const QString& name)
{
    if (name.isEmpty() || name.toUtf8().size() > kMaxBytes)
        return false;
    if (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')) ||
        name.startsWith(QLatin1Char(' ')))
        return false;
    if (!name.isValidUtf16() || std::any_of(name.cbegin(), name.cend(), isForbidden))
        return false;
    return !hasDrive(name) && !isReservedDevice(name);
}
