// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LoopbackServer.h"

#include "SystemCall.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>
#include <utility>

namespace bildkurier {
namespace {

int checked(int answer, const char* what) {
    if (answer < 0) throw std::system_error(errno, std::generic_category(), what);
    return answer;
}

int newSocket() { return checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"); }

FileDescriptor listeningSocket() {
    FileDescriptor listener(newSocket());
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    checked(::bind(listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), "bind");
    checked(::listen(listener.get(), SOMAXCONN), "listen");
    return listener;
}

sockaddr_in addressOf(const FileDescriptor& listener) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    checked(::getsockname(listener.get(), reinterpret_cast<sockaddr*>(&address), &size),
            "getsockname");
    return address;
}

/// A process of the server program, in a group of its own with what it starts.
class ServerProcess {
public:
    explicit ServerProcess(std::vector<std::string> command) {
        // Some servers look up who it is that connects: a pair of sockets would not do.
        const auto listener = listeningSocket();
        const auto address = addressOf(listener);
        socket_ = FileDescriptor(newSocket());
        checked(
            ::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
            "connect");
        const FileDescriptor theirs(
            checked(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC), "accept4"));
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_adddup2(&files, theirs.get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&files, theirs.get(), STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
        std::vector<char*> words;
        words.reserve(command.size() + 1);
        for (auto& word : command) words.push_back(word.data());
        words.push_back(nullptr);
        const int error =
            posix_spawn(&process_, words.front(), &files, &attributes, words.data(), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
        if (error != 0) throw std::system_error(error, std::generic_category(), command.front());
    }
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
    ~ServerProcess() {
        socket_.close();
        int status = 0;
        retried([&] { return ::waitpid(process_, &status, 0); });
    }

    const FileDescriptor& socket() const { return socket_; }
    void kill() const { ::kill(-process_, SIGKILL); }

private:
    FileDescriptor socket_;
    pid_t process_ = 0;
};

bool sendAll(const FileDescriptor& target, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count =
            retried([&] { return ::send(target.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL); });
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Passes on what there is; false at the end of either side or of what may pass.
bool passOn(const FileDescriptor& source, const FileDescriptor& target, std::size_t& passed,
            std::size_t limit) {
    std::array<char, 16384> block{};
    const auto count = retried([&] { return ::read(source.get(), block.data(), block.size()); });
    if (count <= 0) return false;
    const auto allowed = std::min(static_cast<std::size_t>(count), limit - passed);
    passed += allowed;
    return sendAll(target, {block.data(), allowed}) && allowed == static_cast<std::size_t>(count);
}

}  // namespace

LoopbackServer::LoopbackServer(std::vector<std::string> command)
    : command_(std::move(command)),
      listener_(listeningSocket()),
      port_(ntohs(addressOf(listener_).sin_port)),
      acceptor_([this](const std::stop_token& stop) { accept(stop); }) {}

LoopbackServer::~LoopbackServer() {
    acceptor_.request_stop();
    ::shutdown(listener_.get(), SHUT_RDWR);
    acceptor_.join();
}

void LoopbackServer::serveWith(std::vector<std::string> command) {
    const std::lock_guard lock(mutex_);
    command_ = std::move(command);
}

void LoopbackServer::disturb(Limit limit, std::size_t ahead) {
    const std::lock_guard lock(mutex_);
    limits_[accepted_ + ahead] = limit;
}

void LoopbackServer::stallAll(Traffic limit) {
    const std::lock_guard lock(mutex_);
    usual_ = {limit, End::stall};
    isStalled_ = false;
}

void LoopbackServer::waitUntilStalled() {
    std::unique_lock lock(mutex_);
    stalled_.wait(lock, [this] { return isStalled_; });
}

void LoopbackServer::slowDown(std::chrono::milliseconds pause, std::function<void()> look) {
    const std::lock_guard lock(mutex_);
    pace_ = {pause, std::move(look)};
}

void LoopbackServer::behave() {
    const std::lock_guard lock(mutex_);
    usual_ = {};
    pace_ = {};
    limits_.clear();
}

std::vector<LoopbackServer::Traffic> LoopbackServer::finished() {
    std::vector<std::jthread> connections;
    {
        const std::lock_guard lock(mutex_);
        connections.swap(connections_);
    }
    connections.clear();
    const std::lock_guard lock(mutex_);
    return std::exchange(passed_, {});
}

LoopbackServer::Limit LoopbackServer::nextLimit() {
    const auto limit = limits_.extract(accepted_++);
    return limit ? limit.mapped() : usual_;
}

void LoopbackServer::accept(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        FileDescriptor client(
            retried([&] { return ::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC); }));
        if (!client) continue;
        const std::lock_guard lock(mutex_);
        connections_.emplace_back([this, client = std::move(client), command = command_,
                                   limit = nextLimit(), pace = pace_]() mutable {
            serve(std::move(client), std::move(command), limit, pace);
        });
    }
}

void LoopbackServer::serve(FileDescriptor client, std::vector<std::string> command, Limit limit,
                           const Pace& pace) {
    const ServerProcess process(std::move(command));
    const auto& server = process.socket();
    Traffic passed;
    bool open = true;
    while (open) {
        std::array<pollfd, 2> ends{pollfd{client.get(), POLLIN, 0},
                                   pollfd{server.get(), POLLIN, 0}};
        retried([&] { return ::poll(ends.data(), ends.size(), -1); });
        if (ends[0].revents != 0) {
            pace.look();
            std::this_thread::sleep_for(pace.pause);
            open = passOn(client, server, passed.toServer, limit.traffic.toServer);
        }
        if (open && ends[1].revents != 0)
            open = passOn(server, client, passed.toClient, limit.traffic.toClient);
    }
    if (limit.end == End::kill) process.kill();
    const bool isFull =
        passed.toServer == limit.traffic.toServer || passed.toClient == limit.traffic.toClient;
    if (limit.end == End::stall && isFull) stall(client);
    const std::lock_guard lock(mutex_);
    passed_.push_back(passed);
}

void LoopbackServer::stall(const FileDescriptor& client) {
    {
        const std::lock_guard lock(mutex_);
        isStalled_ = true;
        stalled_.notify_all();
    }
    // The end is seen only behind all that was sent before it.
    std::array<char, 16384> unheard{};
    while (retried([&] { return ::read(client.get(), unheard.data(), unheard.size()); }) > 0) {
    }
}

}  // namespace bildkurier
