#pragma once

#include <QLoggingCategory>

// The log's categories, one for each subsystem. By default every line is logged; rules in the
// environment variable QT_LOGGING_RULES narrow that, for example "marvik.hid.debug=false".
// The networking library has a category of its own: "marvik.net".

Q_DECLARE_LOGGING_CATEGORY(hidLog)      // "marvik.hid": the control link to a camera
Q_DECLARE_LOGGING_CATEGORY(videoLog)    // "marvik.video": enumeration of video devices and preview
Q_DECLARE_LOGGING_CATEGORY(hotplugLog)  // "marvik.hotplug": arrival and removal, the device list
Q_DECLARE_LOGGING_CATEGORY(shellLog)    // "marvik.shell": start, main window, dialogs
Q_DECLARE_LOGGING_CATEGORY(settingsLog) // "marvik.settings": reading, applying and saving settings
Q_DECLARE_LOGGING_CATEGORY(updateLog)   // "marvik.update": update checks, downloads, firmware
