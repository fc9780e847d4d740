#pragma once

#include <QJsonObject>
#include <QString>
#include <string>

/// The protocol of the update service: its address, the bodies of requests, and the meaning of
/// answers. Can be called on any thread.
namespace UpdateCheck {

/// Whether this build has an update service; without one, no request is sent.
[[nodiscard]] bool isConfigured();

/// Address to which a check is sent with POST.
[[nodiscard]] std::string url();

/// Path of the file with additional certificate authorities; empty for none.
[[nodiscard]] QString caFile();

/// Body of a check, UTF-8, in the form that the service expects. It is not valid JSON: texts are
/// inserted without escapes, and a comma follows the last member.
/// @param terminalType model of a camera
[[nodiscard]] std::string body(const QString& terminalType, const QString& version);

/// Body of the check for this program itself.
[[nodiscard]] std::string applicationBody(const QString& version);

/// The object in an answer of the service; empty when the answer is not a JSON object.
[[nodiscard]] QJsonObject getJsonObjectFromString(const QString& answer);

/// Whether the service offers an update in its answer. It offers none when the answer contains
/// "needUpgrade": false; any other answer is an offer.
[[nodiscard]] bool offersUpdate(const QJsonObject& answer);

} // namespace UpdateCheck
