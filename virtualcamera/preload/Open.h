#pragma once

#include <stdbool.h>

/* Opens a second umockdev handle on the node, without reporting its purpose to virtualcamera. Call
 * with the node table locked; -1 and errno on failure. */
int openUnannounced(const char* path);
void closeLocked(int fd);
int nodeIoctl(int fd, unsigned long request, unsigned long argument);
