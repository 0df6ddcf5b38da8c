// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {

/// Listens on a port of this computer only, and gives every connection to a new process of a
/// server program, as its standard input and output. It may cut a connection on the way.
class LoopbackServer {
public:
    /// Bytes that pass in each direction.
    struct Traffic {
        std::size_t toServer = 0;
        std::size_t toClient = 0;
    };
    static constexpr auto unlimited = std::numeric_limits<std::size_t>::max();
    static constexpr Traffic noLimit{unlimited, unlimited};

    explicit LoopbackServer(std::vector<std::string> command);
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer();

    std::uint16_t port() const { return port_; }

    /// Cuts the next connection as soon as more than `limit` would pass. A server that is cut
    /// off while it answers has done what it was told.
    void cutNext(Traffic limit);
    /// As `cutNext`, but kills the server at that moment.
    void killNext(Traffic limit);
    /// Waits until all connections have ended and their servers with them; answers what passed
    /// in the last one.
    Traffic finished();

private:
    struct Limit {
        Traffic traffic = noLimit;
        bool kills = false;
    };

    void accept(const std::stop_token& stop);
    void serve(FileDescriptor client, Limit limit);

    std::vector<std::string> command_;
    FileDescriptor listener_;
    std::uint16_t port_ = 0;
    std::mutex mutex_;
    Limit next_;
    Traffic last_;
    std::vector<std::jthread> connections_;
    std::jthread acceptor_;
};

}  // namespace bildkurier
