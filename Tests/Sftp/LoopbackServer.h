// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
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

    /// Starts another program for every connection from now on.
    void serveWith(std::vector<std::string> command);
    /// Cuts the next connection, or the one that comes `ahead` connections behind it, as soon as
    /// more than `limit` would pass. A server that is cut off while it answers has done what it
    /// was told.
    void cutNext(Traffic limit, std::size_t ahead = 0) { disturb({limit, End::cut}, ahead); }
    /// As `cutNext`, but kills the server at that moment.
    void killNext(Traffic limit, std::size_t ahead = 0) { disturb({limit, End::kill}, ahead); }
    /// Passes nothing more in any connection from now on as soon as more than `limit` would pass,
    /// and leaves it open until the client closes it.
    void stallAll(Traffic limit);
    void waitUntilStalled();
    /// Passes what goes to the server in small blocks from now on, one each `pause`, and calls
    /// `look` before each of them, from the connection's thread.
    void slowDown(std::chrono::milliseconds pause, std::function<void()> look);
    /// Neither disturbs nor slows down any connection that is still to come.
    void behave();
    /// Waits until all connections have ended and their servers with them; answers what passed
    /// in each since the last call.
    std::vector<Traffic> finished();

private:
    enum class End : std::uint8_t { cut, kill, stall };
    struct Limit {
        Traffic traffic = noLimit;
        End end = End::cut;
    };
    /// What happens before each block that goes to the server.
    struct Pace {
        std::chrono::milliseconds pause{0};
        std::function<void()> look = [] {};
    };

    void disturb(Limit limit, std::size_t ahead);
    Limit nextLimit();
    void accept(const std::stop_token& stop);
    void serve(FileDescriptor client, std::vector<std::string> command, Limit limit,
               const Pace& pace);
    void stall(const FileDescriptor& client);

    std::vector<std::string> command_;
    FileDescriptor listener_;
    std::uint16_t port_ = 0;
    std::mutex mutex_;
    std::condition_variable stalled_;
    bool isStalled_ = false;
    std::size_t accepted_ = 0;
    std::map<std::size_t, Limit> limits_;  ///< by the number of the connection
    Limit usual_;
    Pace pace_;
    std::vector<Traffic> passed_;
    std::vector<std::jthread> connections_;
    std::jthread acceptor_;
};

}  // namespace bildkurier
