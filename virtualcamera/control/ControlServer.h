#pragma once

#include "FileDescriptor.h"

#include <list>
#include <mutex>
#include <string>
#include <thread>

namespace virtualcamera {

class ControlCommands;

/// Serves the control socket with one thread per client, because a request may wait for minutes.
class ControlServer
{
public:
    ControlServer(ControlCommands& commands, std::string path);
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

private:
    struct Connection
    {
        FileDescriptor socket;
        std::thread thread;
        bool finished = false;
    };

    void acceptClients();
    void serve(Connection& connection);
    void forgetFinished();

    ControlCommands& m_commands;
    const std::string m_path;
    FileDescriptor m_listener;
    std::mutex m_mutex;
    std::list<Connection> m_connections;
    std::thread m_acceptor;
};

} // namespace virtualcamera
