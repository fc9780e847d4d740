#pragma once

/// Makes the queue of the program's udev monitor overflow, as the kernel does when a program reads
/// too slowly: the events are dropped and the next read fails with ENOBUFS.
///
/// Replaces recvmsg() of the C library for all threads but the main one, so the test may have no
/// other thread that uses it. One object at a time.
class LostUevents
{
public:
    /// From now on the monitor's read blocks.
    LostUevents();
    ~LostUevents();
    LostUevents(const LostUevents&) = delete;
    LostUevents& operator=(const LostUevents&) = delete;

    /// Drops what has been sent since the object was made, and returns when the read has failed.
    /// At least one event must have been sent.
    void overflow();
};
