#include "Style.h"

#include <gtest/gtest.h>
#include <QSet>

TEST(Style, NamesAndValuesAreUnique)
{
    QSet<QString> names;
    QSet<QString> values;
    for (const Style::Colour& colour : Style::kColours) {
        names.insert(QString::fromLatin1(colour.name));
        values.insert(QString::fromLatin1(colour.value).toUpper());
        EXPECT_TRUE(QColor::isValidColor(QString::fromLatin1(colour.value))) << colour.name;
    }
    EXPECT_EQ(names.size(), static_cast<int>(Style::kColours.size()));
    EXPECT_EQ(values.size(), static_cast<int>(Style::kColours.size()));
}

TEST(Style, SheetHasTheValueInThePlaceOfEachName)
{
    EXPECT_EQ(Style::sheet("a { color: @accent; border: 1px solid @accent-hover }"),
              QStringLiteral("a { color: #3476FF; border: 1px solid #5289FF }"));
    EXPECT_EQ(Style::sheet("@text"), QStringLiteral("#141414"));
    EXPECT_EQ(Style::sheet("#id { image: none; } "), QStringLiteral("#id { image: none; } "));
    EXPECT_EQ(Style::sheet(""), QString());
}
