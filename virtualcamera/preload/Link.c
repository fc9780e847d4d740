/* The links below /proc that show what a process has open.
 *
 * Gap: umockdev leaves the FIFO behind a node in the links "/proc/<process>/fd/<n>", where a
 * program looks for the node that another program has open. virtualcamera has the FIFO open too,
 * but stands for the kernel, which is no process. */
#define _GNU_SOURCE
#include "Next.h"
#include "Node.h"

#include <limits.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

DEFINE_NEXT(ssize_t, nextReadlink, "readlink", const char*, char*, size_t)

static bool isBus(long process)
{
    char path[64];
    char name[32] = "";
    snprintf(path, sizeof path, "/proc/%ld/comm", process);
    FILE* file = fopen(path, "re");
    if (!file)
        return false;
    const bool read = fgets(name, sizeof name, file) != NULL;
    fclose(file);
    return read && strcmp(name, "virtualcamera\n") == 0;
}

ssize_t readlink(const char* path, char* target, size_t size)
{
    long process = 0;
    char link[PATH_MAX];
    char node[PATH_MAX];
    const ssize_t length = nextReadlink()(path, target, size);
    if (length <= 0 || (size_t)length >= sizeof link ||
        sscanf(path, "/proc/%ld/fd/", &process) != 1)
        return length;
    memcpy(link, target, (size_t)length);
    link[length] = '\0';
    if (!nodeOfLink(link, node, sizeof node) || strlen(node) > size || isBus(process))
        return length;
    memcpy(target, node, strlen(node));
    return (ssize_t)strlen(node);
}
