#include "SystemFacts.h"

QString SystemFacts::userName()
{
    return qEnvironmentVariable("USERNAME");
}

QJsonObject SystemFacts::user()
{
    return {{QStringLiteral("name"), userName()}};
}

QJsonObject SystemFacts::node(const QString& path)
{
    return {{QStringLiteral("path"), path}};
}

QJsonObject SystemFacts::rules()
{
    return {};
}
