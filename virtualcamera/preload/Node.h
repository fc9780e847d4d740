#pragma once

#include <stdbool.h>
#include <sys/stat.h>

/* The directory that stands for / (umockdev's), or NULL in a process without one. */
const char* nodeRoot(void);

/* The node "/dev/..." of a virtual camera that `fd` is open on; false for any other file. */
bool nodeOfFd(int fd, char* path, unsigned long size);

/* The same for the target of a link below /proc/<process>/fd, which is changed. */
bool nodeOfLink(char* target, char* path, unsigned long size);

/* Whether a path can be the path of a node. */
bool isNodePath(const char* path);

/* fstat() of the C library, which shows the FIFO behind a node. */
int realFstat(int fd, struct stat* status);

/* umockdev's table of open nodes has no lock; every change of the table is made under this one. */
void nodeTableLock(void);
void nodeTableUnlock(void);
