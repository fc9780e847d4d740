#pragma once

/// What whoever ships a build says about itself and its services; set through CMake (see the
/// README). Texts are UTF-8.
namespace Vendor {

[[nodiscard]] const char* contactLine();
[[nodiscard]] const char* companyLine();
[[nodiscard]] const char* privacyPolicyUrl();
[[nodiscard]] const char* termsOfServiceUrl();

/// Base address of the update service, without a slash at its end. An empty one, or one under the
/// reserved domain ".invalid", means that there is none.
[[nodiscard]] const char* updateBaseUrl();
/// A PEM file with certificate authorities that the update service may be certified by besides
/// those of the system; empty for none. A relative path begins at the program's folder.
[[nodiscard]] const char* updateCaFile();
/// Whether the program looks for a newer version of itself. Not where a package manager does.
[[nodiscard]] bool checksForApplicationUpdate();

} // namespace Vendor
