#pragma once

#include <QJsonObject>
#include <QString>
#include <string>

/// The conversation with the update service: where it is, what it is asked, how its answer is
/// understood. Callable on any thread.
namespace UpdateCheck {

/// Whether this build knows a service to ask; without one, no request is made.
[[nodiscard]] bool isConfigured();

/// Address that the checks are posted to.
[[nodiscard]] std::string url();

/// Path of the file with additional certificate authorities; empty for none.
[[nodiscard]] QString caFile();

/// Body of a check, UTF-8. The service's own form, which is not quite JSON: texts stand in it as
/// they are, and a comma follows the last member.
/// @param terminalType model of a camera
[[nodiscard]] std::string body(const QString& terminalType, const QString& version);

/// Body of the check for this program itself.
[[nodiscard]] std::string applicationBody(const QString& version);

/// The object in an answer of the service; empty when the answer is not a JSON object.
[[nodiscard]] QJsonObject getJsonObjectFromString(const QString& answer);

/// Whether an answer offers something. Only a plain "false" says no: a service that says anything
/// else means to be heard.
[[nodiscard]] bool offersUpdate(const QJsonObject& answer);

} // namespace UpdateCheck
