#pragma once

#include <QString>

/// The size of a package as the update service writes it: a number and a unit of two letters,
/// "52.4MB".
class PackageSize
{
public:
    /// The last two characters are the unit, whatever they are; a text without a number before them
    /// is a size of 0.
    explicit PackageSize(const QString& text);

    /// How far a download is, "19.4/52.4MB".
    /// @param percent 0 to 100
    [[nodiscard]] QString progressText(int percent) const;

private:
    float m_total = 0;
    QString m_unit;
};
