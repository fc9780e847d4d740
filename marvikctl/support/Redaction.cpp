#include "Redaction.h"

#include <algorithm>
#include <QRegularExpression>

void Redaction::hide(const QString& secret, const QString& kind)
{
    if (!secret.isEmpty() && !m_words.contains(secret))
        m_words.insert(secret, QStringLiteral("%1-%2").arg(kind).arg(++m_counts[kind]));
}

QString Redaction::apply(QString text) const
{
    // A longer number first: a shorter one may be its beginning.
    QStringList secrets = m_words.keys();
    std::stable_sort(secrets.begin(), secrets.end(),
                     [](const QString& a, const QString& b) { return a.size() > b.size(); });
    for (const QString& secret : qAsConst(secrets)) {
        // As a word of its own: the name of a user may be part of other words.
        const QRegularExpression word(QStringLiteral("(?<![A-Za-z0-9])%1(?![A-Za-z0-9])")
                                          .arg(QRegularExpression::escape(secret)));
        text.replace(word, m_words.value(secret));
    }
    return text;
}
