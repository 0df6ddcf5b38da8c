// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SshServer.h"

#include "ProgramCall.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

constexpr auto program = "/usr/sbin/sshd";
constexpr uid_t nobody = 65534;

uid_t serversUser() { return ::geteuid() == 0 ? nobody : ::geteuid(); }

std::string nameOf(uid_t user) {
    const passwd* entry = ::getpwuid(user);  // NOLINT(concurrency-mt-unsafe)
    if (!entry) throw std::system_error(ENOENT, std::generic_category(), "getpwuid");
    return entry->pw_name;
}

/// `command` as the server's user runs it.
std::vector<std::string> asServersUser(std::vector<std::string> command) {
    if (::geteuid() != 0) return command;
    const auto id = std::to_string(nobody);
    std::vector<std::string> words{"/usr/bin/setpriv", "--reuid=" + id, "--regid=" + id,
                                   "--clear-groups"};
    words.insert(words.end(), command.begin(), command.end());
    return words;
}

void makeKey(const std::string& file) {
    fs::remove(file);
    if (!succeeds({"ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", file}))
        throw std::system_error(EIO, std::generic_category(), "ssh-keygen");
}

}  // namespace

bool SshServer::isInstalled() { return fs::exists(program); }

SshServer::SshServer() {
    makeKey(folder_.path("host_key"));
    makeKey(folder_.path("key"));
    fs::copy_file(folder_.path("key.pub"), folder_.path("authorized_keys"));
    folder_.makeFolder("files");
    const auto config =
        folder_.write("config", "HostKey " + folder_.path("host_key") + "\nAuthorizedKeysFile " +
                                    folder_.path("authorized_keys") +
                                    "\nStrictModes no\nUsePAM yes\n"
                                    "PasswordAuthentication no\n"
                                    "KbdInteractiveAuthentication no\n"
                                    "PidFile none\n"
                                    "Subsystem sftp internal-sftp\n"
                                    "ForceCommand internal-sftp\n");
    for (const auto& file : {"host_key", "authorized_keys", "files", "config"})
        handOver(folder_.path(file));
    handOver(folder_.path());
    connection_ = std::make_unique<LoopbackServer>(
        asServersUser({program, "-i", "-f", config, "-E", folder_.path("log")}));
}

Url SshServer::url(std::string_view relative) const {
    return {.scheme = "sftp",
            .user = nameOf(serversUser()),
            .host = "127.0.0.1",
            .port = connection_->port(),
            .path = path(relative)};
}

std::string SshServer::path(std::string_view relative) const {
    return relative.empty() ? folder_.path("files")
                            : folder_.path("files/") + std::string(relative);
}

SSHLogin SshServer::login() const {
    return SSHLogin::appKey(folder_.url("key"), folder_.url("known_hosts"));
}

void SshServer::changeHostKey() const {
    makeKey(folder_.path("host_key"));
    handOver(folder_.path("host_key"));
}

void SshServer::refuseKeys() const { folder_.write("authorized_keys", ""); }

void SshServer::makeFolder(std::string_view relative) const {
    fs::create_directories(path(relative));
    handOver(path(relative));
}

void SshServer::handOver(const std::string& path) const {
    if (::lchown(path.c_str(), serversUser(), static_cast<gid_t>(-1)) != 0)
        throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace bildkurier
