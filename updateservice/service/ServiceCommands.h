#pragma once

#include <QString>

namespace updateservice {

class UpdateService;

/// Runs commands, one a line, that change a service while it runs.
class ServiceCommands
{
public:
    explicit ServiceCommands(UpdateService& service);

    /// @return the reply, "ok" or "ok text" or "error text"
    QString run(const QString& line);

private:
    QString offer(const QString& words);
    [[nodiscard]] QString requests() const;

    UpdateService& m_service;
};

} // namespace updateservice
