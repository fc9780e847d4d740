#pragma once

#include <QString>

/// Stands in for what a shipped build says about itself: the addresses of a test's own services. An
/// object library, so that it wins over the values of the build.
namespace TestVendor {

/// Empty, as from the start, for a build that knows no service.
void setUpdateBaseUrl(const QString& url);
void setUpdateCaFile(const QString& path);
void setChecksForApplicationUpdate(bool checks);

} // namespace TestVendor
