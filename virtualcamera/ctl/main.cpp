#include "client/VirtualCameraClient.h"

#include <cstdio>
#include <exception>
#include <string>

/// Sends one request to the virtual camera, for scripts: virtualcamera-ctl unplug cam1
/// VIRTUALCAMERA_SOCKET names the control socket. Prints the words of the answer, one a line.
int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("usage: virtualcamera-ctl request...\n", stderr);
        return 2;
    }
    std::string line;
    for (int i = 1; i < argc; ++i) {
        if (i > 1)
            line += ' ';
        line += argv[i];
    }
    try {
        virtualcamera::VirtualCameraClient client;
        for (const std::string& word : client.request(line))
            std::puts(word.c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "virtualcamera-ctl: %s\n", error.what());
        return 1;
    }
    return 0;
}
