#pragma once

#include "FileDescriptor.h"

#include <cstdint>
#include <string>
#include <vector>

namespace virtualcamera {

/// The device's end of the queue behind one open() of a device node. The node is a FIFO in packet
/// mode, so that the program uses the kernel's own poll() and read(): one write is one report, and
/// a read that is too small drops the rest of the report, as with hidraw.
class Fifo
{
public:
    /// Puts a new FIFO at the path, replacing what is there.
    static Fifo create(const std::string& path);

    /// False when the queue is full.
    bool push(const std::vector<std::uint8_t>& packet);
    /// Makes the node readable.
    bool pushToken() { return push({0}); }
    /// Removes one packet, if there is one.
    bool pop();
    void drain();

    std::uint64_t inode() const { return m_inode; }

private:
    FileDescriptor m_fd;
    std::uint64_t m_inode = 0;
};

} // namespace virtualcamera
