#pragma once

#include <QString>

/// The size of a package as the update service writes it: a number and a unit of two letters,
/// "52.4MB".
class PackageSize
{
public:
    /// The last two characters of @p text are always the unit. The size is 0 when the text before
    /// them is not a number.
    explicit PackageSize(const QString& text);

    /// The downloaded part and the total, "19.4/52.4MB".
    /// @param percent 0 to 100
    [[nodiscard]] QString progressText(int percent) const;

private:
    float m_total = 0;
    QString m_unit;
};
