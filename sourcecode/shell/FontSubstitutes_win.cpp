#include "FontSubstitutes.h"

#include <QFont>
#include <QStringList>

void FontSubstitutes::install()
{
    // Windows in other languages may not have that font.
    const QStringList substitutes{QStringLiteral("Microsoft YaHei"), QStringLiteral("Segoe UI"),
                                  QStringLiteral("SimSun"), QStringLiteral("Noto Sans CJK SC")};
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei UI"), substitutes);
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei"), substitutes.mid(1));
}
