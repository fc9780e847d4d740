#pragma once

#include "CHttpClient.h"

#include <QJsonObject>
#include <QObject>
#include <string>

/// Asks the update service once whether there is a newer version of this program. Quiet: only an
/// offer is told, everything else is for the log.
class ApplicationUpdateCheck : public QObject
{
    Q_OBJECT

public:
    explicit ApplicationUpdateCheck(QObject* parent = nullptr);

    /// Asks with @p body, unless it has asked before or this build is updated by other means or
    /// knows no service.
    void checkOnce(const std::string& body);

signals:
    /// The service's answer.
    void sigOffer(const QJsonObject& updateData);

private:
    void takeAnswer(const std::string& body);

    bool m_asked = false;
    Brivane::CHttpClient m_client;
};
