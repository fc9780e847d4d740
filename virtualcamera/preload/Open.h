#pragma once

#include <stdbool.h>

/* A second handle of umockdev's on the node, without telling the bench what it is for. Call with
 * the node table locked; -1 and errno on failure. */
int openUnannounced(const char* path);
void closeLocked(int fd);
int nodeIoctl(int fd, unsigned long request, unsigned long argument);
