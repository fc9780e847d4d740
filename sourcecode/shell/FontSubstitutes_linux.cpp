#include "FontSubstitutes.h"

#include <QFont>
#include <QStringList>

void FontSubstitutes::install()
{
    const QStringList substitutes{QStringLiteral("Noto Sans CJK SC"),
                                  QStringLiteral("WenQuanYi Micro Hei"),
                                  QStringLiteral("DejaVu Sans")};
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei UI"), substitutes);
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei"), substitutes);
}
