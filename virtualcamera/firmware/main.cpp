#include "core/Checksum.h"
#include "core/DeviceFirmware.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

/// "1.0.6" is three bytes.
virtualcamera::Bytes parseVersion(const std::string& text)
{
    virtualcamera::Bytes version;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, '.');) {
        const unsigned long number = std::stoul(part);
        if (number > 0xFF)
            throw std::out_of_range("version");
        version.push_back(static_cast<std::uint8_t>(number));
    }
    return version;
}

/// A payload that differs everywhere, so that no packet looks like another; the same every time.
virtualcamera::Bytes makePayload(std::size_t size)
{
    std::mt19937 random(static_cast<std::mt19937::result_type>(size));
    virtualcamera::Bytes payload(size);
    for (std::uint8_t& byte : payload)
        byte = static_cast<std::uint8_t>(random());
    return payload;
}

} // namespace

/// Makes a firmware image that the virtual camera accepts, and says of it what the camera says of
/// the one that it has received.
int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: virtualcamera-firmware <version> <payload bytes> <file>\n");
        return 2;
    }
    try {
        const virtualcamera::DeviceFirmware image{parseVersion(argv[1]),
                                                  makePayload(std::stoul(argv[2]))};
        const virtualcamera::Bytes bytes = image.encode();
        std::ofstream file(argv[3], std::ios::binary);
        std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
        file.close();
        if (file.good()) {
            std::printf("size=%zu\nchecksum=0x%04x\n", bytes.size(),
                        static_cast<unsigned>(virtualcamera::checksum(bytes.data(), bytes.size())));
            return 0;
        }
        std::fprintf(stderr, "virtualcamera-firmware: cannot write %s\n", argv[3]);
    } catch (const std::logic_error&) {
        std::fprintf(stderr, "virtualcamera-firmware: no version, or no number of bytes\n");
    }
    return 1;
}
