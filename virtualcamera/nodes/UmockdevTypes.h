#pragma once

// The types of <umockdev.h>, which would bring GLib into every header of this folder.
// NOLINTBEGIN(bugprone-reserved-identifier): umockdev's own names.
typedef struct _UMockdevIoctlBase UMockdevIoctlBase;
typedef struct _UMockdevIoctlClient UMockdevIoctlClient;
typedef struct _UMockdevIoctlData UMockdevIoctlData;
typedef struct _UMockdevTestbed UMockdevTestbed;
// NOLINTEND(bugprone-reserved-identifier)
