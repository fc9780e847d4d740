// Takes the lock of the camera whose interface the first argument names, for the use that the
// second one names, and holds it until its input ends or it is killed.

#include "CameraLock.h"

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const bool isFirmware = std::strcmp(argv[2], "firmware") == 0;
    CameraLock lock;
    if (!lock.acquire(argv[1], isFirmware ? CameraLock::Use::Firmware : CameraLock::Use::Exchange,
                      std::chrono::milliseconds(0)))
        return 1;
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
