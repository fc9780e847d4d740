#pragma once

#include "CHttpClient.h"

#include <QJsonObject>
#include <QObject>
#include <string>

/// Asks the update service once whether there is a newer version of this program. Only an offer is
/// reported; every other result is written to the log and the user does not see it.
class ApplicationUpdateCheck : public QObject
{
    Q_OBJECT

public:
    explicit ApplicationUpdateCheck(QObject* parent = nullptr);

    /// Sends @p body to the update service. Does nothing when it was called before, when a package
    /// manager updates this build, or when this build has no update service.
    void checkOnce(const std::string& body);

signals:
    /// The service offers a newer version. Emitted on the networking library's thread.
    /// @param updateData the service's answer
    void sigOffer(const QJsonObject& updateData);

private:
    void takeAnswer(const std::string& body);

    bool m_asked = false;
    Brivane::CHttpClient m_client;
};
