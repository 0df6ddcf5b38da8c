// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SshServer.h"

#include "ProgramCall.h"

#include <fmt/format.h>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;

uid_t serversUser() { return ::geteuid() == 0 ? nobody : ::geteuid(); }

// NOLINTBEGIN(concurrency-mt-unsafe)
const passwd& accountOf(uid_t user) {
    const passwd* entry = ::getpwuid(user);
    if (!entry) throw std::system_error(ENOENT, std::generic_category(), "getpwuid");
    return *entry;
}

std::string groupOf(uid_t user) {
    const group* entry = ::getgrgid(accountOf(user).pw_gid);
    if (!entry) throw std::system_error(ENOENT, std::generic_category(), "getgrgid");
    return entry->gr_name;
}
// NOLINTEND(concurrency-mt-unsafe)

std::string nameOf(uid_t user) { return accountOf(user).pw_name; }

/// `command` as the server's user runs it.
std::vector<std::string> asServersUser(std::vector<std::string> command) {
    if (::geteuid() != 0) return command;
    const auto id = std::to_string(nobody);
    std::vector<std::string> words{"/usr/bin/setpriv", "--reuid=" + id, "--regid=" + id,
                                   "--clear-groups"};
    words.insert(words.end(), command.begin(), command.end());
    return words;
}

/// Sets a server up in `folder`, where its keys are; answers what starts it for a connection.
std::vector<std::string> openSsh(const TemporaryFolder& folder) {
    fs::copy_file(folder.path("key.pub"), folder.path("authorized_keys"));
    const auto config =
        folder.write("config", fmt::format("HostKey {0}/host_key\n"
                                           "AuthorizedKeysFile {0}/authorized_keys\n"
                                           "StrictModes no\n"
                                           "UsePAM yes\n"
                                           "KexAlgorithms curve25519-sha256\n"  // the quickest
                                           "PasswordAuthentication no\n"
                                           "KbdInteractiveAuthentication no\n"
                                           "PidFile none\n"
                                           "Subsystem sftp internal-sftp\n"
                                           "ForceCommand internal-sftp\n",
                                           folder.path()));
    return {"/usr/sbin/sshd", "-i", "-f", config, "-E", folder.path("log")};
}

std::vector<std::string> proFtpd(const TemporaryFolder& folder) {
    const auto keys = ProgramCall{.path = "/usr/bin/ssh-keygen",
                                  .arguments = {"-e", "-f", folder.path("key.pub")}}
                          .run();
    folder.write("authorized_keys", keys.out);
    const auto user = serversUser();
    const auto users = folder.write(
        "users", fmt::format("{}:x:{}:{}::{}:/bin/sh\n", nameOf(user), user, user, folder.path()));
    fs::permissions(users, fs::perms::owner_read | fs::perms::owner_write);
    const auto config =
        folder.write("config", fmt::format("ModulePath /usr/lib/proftpd\n"
                                           "LoadModule mod_sftp.c\n"
                                           "ServerType inetd\n"
                                           "DefaultServer on\n"
                                           "User {1}\n"
                                           "Group {2}\n"
                                           "Port 0\n"
                                           "RequireValidShell off\n"
                                           "UseFtpUsers off\n"
                                           "UseReverseDNS off\n"
                                           "WtmpLog off\n"
                                           "SystemLog none\n"
                                           "TransferLog none\n"
                                           "PidFile {0}/pid\n"
                                           "ScoreboardFile none\n"
                                           "DelayEngine off\n"
                                           "AuthPAM off\n"
                                           "AuthUserFile {0}/users\n"
                                           "AuthOrder mod_auth_file.c\n"
                                           "AllowOverwrite on\n"
                                           "SFTPEngine on\n"
                                           "SFTPHostKey {0}/host_key\n"
                                           "SFTPAuthMethods publickey\n"
                                           "SFTPAuthorizedUserKeys file:{0}/authorized_keys\n"
                                           "SFTPLog {0}/log\n",
                                           folder.path(), nameOf(user), groupOf(user)));
    return {"/usr/sbin/proftpd", "-q", "-c", config};
}

void makeKey(const std::string& file) {
    fs::remove(file);
    if (!succeeds({"ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", file}))
        throw std::system_error(EIO, std::generic_category(), "ssh-keygen");
}

}  // namespace

bool SshServer::isInstalled(Product product) {
    if (product == Product::openSsh) return fs::exists("/usr/sbin/sshd");
    return fs::exists("/usr/sbin/proftpd") && fs::exists("/usr/lib/proftpd/mod_sftp.so");
}

SshServer::SshServer(Product product) : user_(nameOf(serversUser())) {
    makeKey(folder_.path("host_key"));
    makeKey(folder_.path("key"));
    folder_.makeFolder("files");
    command_ = asServersUser(product == Product::openSsh ? openSsh(folder_) : proFtpd(folder_));
    for (const auto& entry : fs::directory_iterator(folder_.path()))
        if (entry.path().filename() != "key") handOver(entry.path());
    handOver(folder_.path());
    connection_ = std::make_unique<LoopbackServer>(command_);
}

Url SshServer::url(std::string_view relative) const {
    return {.scheme = "sftp",
            .user = user_,
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

void SshServer::acceptKeys() const {
    fs::copy_file(folder_.path("key.pub"), folder_.path("authorized_keys"),
                  fs::copy_options::overwrite_existing);
    handOver(folder_.path("authorized_keys"));
}

void SshServer::limitFiles(std::optional<std::uint64_t> bytes) {
    if (!bytes) return connection_->serveWith(command_);
    std::vector<std::string> words{"/bin/sh", "-c",
                                   "trap '' XFSZ; exec prlimit --fsize=\"$0\" \"$@\"",
                                   std::to_string(*bytes)};
    words.insert(words.end(), command_.begin(), command_.end());
    connection_->serveWith(std::move(words));
}

void SshServer::makeFolder(std::string_view relative) const {
    fs::create_directories(path(relative));
    handOver(path(relative));
}

void SshServer::handOver(const std::string& path) const {
    if (::lchown(path.c_str(), serversUser(), static_cast<gid_t>(-1)) != 0)
        throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace bildkurier
