#pragma once

#include <QMap>
#include <QString>

/// Replaces serial numbers and names of users in a report by words that stand for them.
class Redaction
{
public:
    void hideSerial(const QString& serial) { hide(serial, QStringLiteral("SERIAL")); }
    void hideUser(const QString& user) { hide(user, QStringLiteral("USER")); }

    [[nodiscard]] QString apply(QString text) const;

private:
    void hide(const QString& secret, const QString& kind);

    QMap<QString, QString> m_words;
    QMap<QString, int> m_counts;
};
