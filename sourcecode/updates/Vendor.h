#pragma once

/// Texts and addresses of the vendor of this build. They are set by CMake variables (see the
/// README). Texts are UTF-8.
namespace Vendor {

[[nodiscard]] const char* contactLine();
[[nodiscard]] const char* companyLine();
[[nodiscard]] const char* privacyPolicyUrl();
[[nodiscard]] const char* termsOfServiceUrl();

/// Base address of the update service, without a slash at its end. An empty one, or one under the
/// reserved domain ".invalid", means that there is none.
[[nodiscard]] const char* updateBaseUrl();
/// A PEM file with certificate authorities that are trusted for the update service in addition to
/// the system's; empty for none. A relative path is relative to the program's folder.
[[nodiscard]] const char* updateCaFile();
/// Whether the program asks for newer versions of itself; false where a package manager updates it.
[[nodiscard]] bool checksForApplicationUpdate();

} // namespace Vendor
