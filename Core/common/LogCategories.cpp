#include "LogCategories.h"

Q_LOGGING_CATEGORY(hidLog, "marvik.hid")
Q_LOGGING_CATEGORY(videoLog, "marvik.video")
Q_LOGGING_CATEGORY(hotplugLog, "marvik.hotplug")
Q_LOGGING_CATEGORY(shellLog, "marvik.shell")
Q_LOGGING_CATEGORY(settingsLog, "marvik.settings")
Q_LOGGING_CATEGORY(updateLog, "marvik.update")
