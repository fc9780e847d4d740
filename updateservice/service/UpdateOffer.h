#pragma once

#include <QByteArray>
#include <QString>

namespace updateservice {

/// What the service answers to a check.
struct UpdateOffer
{
    QString version;     ///< who has it already is told to be up to date
    QString details;     ///< release notes
    QString url;         ///< of the package
    QString packageSize; ///< such as "1.5MB"
    QByteArray text;     ///< instead of all that, when it is not empty

    /// @param body of the check, which need not be valid JSON
    [[nodiscard]] QByteArray answerTo(const QByteArray& body) const;
    [[nodiscard]] static QByteArray upToDate();
    /// As the service writes sizes.
    [[nodiscard]] static QString sizeText(qint64 bytes);
};

} // namespace updateservice
