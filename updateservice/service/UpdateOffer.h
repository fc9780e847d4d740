#pragma once

#include <QByteArray>
#include <QString>

namespace updateservice {

/// What the service answers to a check.
struct UpdateOffer
{
    QString version;     ///< a check with this version is answered with "up to date"
    QString details;     ///< release notes
    QString url;         ///< of the package
    QString packageSize; ///< such as "1.5MB"
    QByteArray text;     ///< if not empty: the whole answer, instead of the above

    /// @param body of the check, which need not be valid JSON
    [[nodiscard]] QByteArray answerTo(const QByteArray& body) const;
    [[nodiscard]] static QByteArray upToDate();
    /// The size as text, as the service writes it.
    [[nodiscard]] static QString sizeText(qint64 bytes);
};

} // namespace updateservice
