#include "PackageFileName.h"

#include <algorithm>
#include <QStringList>

namespace {

constexpr int kMaxBytes = 255; // of a name, on the common file systems

/// Names that open a device on Windows, whatever extension follows.
bool isReservedDevice(const QString& name)
{
    // Blanks before the extension do not keep the name from meaning the device.
    const QString stem = name.section(QLatin1Char('.'), 0, 0).trimmed().toUpper();
    static const QStringList plainDevices{QStringLiteral("CON"),    QStringLiteral("PRN"),
                                          QStringLiteral("AUX"),    QStringLiteral("NUL"),
                                          QStringLiteral("CONIN$"), QStringLiteral("CONOUT$"),
                                          QStringLiteral("CLOCK$")};
    if (plainDevices.contains(stem))
        return true;
    const bool port =
        stem.startsWith(QLatin1String("COM")) || stem.startsWith(QLatin1String("LPT"));
    // Superscript digits count as digits there.
    static const QString portDigits = QStringLiteral("0123456789\u00B9\u00B2\u00B3");
    return port && stem.size() == 4 && portDigits.contains(stem.at(3));
}

/// Characters that Windows forbids in names, or that lead out of a directory somewhere.
bool isForbidden(QChar character)
{
    static const QString forbidden = QStringLiteral("/\\:*?\"<>|");
    return character < QLatin1Char(' ') || character == QChar(0x7F) ||
           character.category() == QChar::Other_Control || forbidden.contains(character);
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
    return !isReservedDevice(name);
}
