// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SFTPFileStore.h"

#include "FileDescriptor.h"
#include "FileName.h"
#include "SftpKeyWalk.h"
#include "SftpOutput.h"
#include "SystemCall.h"

#include <fcntl.h>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace bildkurier {
namespace {

constexpr std::string_view probeName = ".bildkurier-probe";

/// `text` in quotes, with a backslash in front of each of the characters `escaped`.
std::string quotedWith(std::string_view escaped, std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (escaped.contains(c)) result += '\\';
        result += c;
    }
    return result + "\"";
}

template <class... Paths>
std::string command(std::string_view verb, const Paths&... paths) {
    std::string line(verb);
    ((line += " " + SFTPFileStore::quoted(paths)), ...);
    return line;
}

std::string listCommand(const Url& url) {
    return "ls -ln " + SFTPFileStore::quotedForListing(url.path);
}

bool makeEmptyFile(const std::string& path) {
    constexpr auto how = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC;
    constexpr auto permissions = 0600;
    return static_cast<bool>(
        FileDescriptor(retried([&] { return ::open(path.c_str(), how, permissions); })));
}

std::string joined(const SftpCommands& commands) {
    std::string script;
    for (const auto& line : commands) script.append(line).append("\n");
    return script;
}

/// Whether `line` lists the file `url` itself, and not what a folder of that name holds.
bool lists(const SftpListingLine& line, const Url& url) {
    const auto name = url.lastComponent();
    const auto inside = url.appending(name).path;
    const auto shows = [&](std::string_view path) {
        return path != inside && lastPathComponent(path) == name;
    };
    return !line.isDirectory && (shows(line.path) || shows(withoutEscapes(line.path)));
}

}  // namespace

SFTPFileStore::SFTPFileStore(std::shared_ptr<CommandRunner> runner, std::string sftp, Login login,
                             Url stagingRoot)
    : runner_(std::move(runner)),
      sftp_(std::move(sftp)),
      login_(std::move(login)),
      stagingRoot_(std::move(stagingRoot)) {}

Url SFTPFileStore::stagingDirectory(const Url& /*destination*/) {
    return stagingRoot_.appending("staging");
}

FileKeys SFTPFileStore::existingFileKeys(const Url& folder) {
    SftpKeyWalk walk(folder.path);
    while (walk.goesOn()) {
        const auto [status, output] = batch(folder, walk.commands());
        if (status != 0) break;
        walk.read(output);
    }
    return walk.keys();
}

bool SFTPFileStore::fileExists(const Url& url) {
    return batch(url, {listCommand(url)}).status == 0;
}

std::optional<std::int64_t> SFTPFileStore::fileSize(const Url& url) {
    const auto [status, output] = batch(url, {listCommand(url)});
    if (status != 0) return {};
    for (const auto text : nonEmptyLines(output))
        if (const auto line = listingLine(text); line && lists(*line, url)) return line->size;
    return {};
}

bool SFTPFileStore::isWritableDirectory(const Url& url) {
    const auto probe = stagingRoot_.appending(probeName);
    (void)localStore_.createDirectory(stagingRoot_);
    if (!makeEmptyFile(probe.path)) return false;
    const auto remoteProbe = url.appending(probeName);
    const auto status =
        batch(url, {command("cd", url.path), command("put", probe.path, remoteProbe.path),
                    command("rm", remoteProbe.path)})
            .status;
    localStore_.removeItem(probe);
    return status == 0;
}

bool SFTPFileStore::isNetworkVolume(const Url& /*url*/) { return false; }

std::optional<std::int64_t> SFTPFileStore::availableCapacity(const Url& url) {
    const auto [status, output] = batch(url, {command("df", url.path)});
    if (status != 0) return {};
    return freeBytes(output);
}

Result<> SFTPFileStore::createDirectory(const Url& url) {
    auto commands = makeDirectories(url.path);
    commands.push_back(command("cd", url.path));
    const auto [status, output] = batch(url, commands);
    if (status != 0) return failure("Ordner lässt sich nicht anlegen: " + message(output));
    return {};
}

Result<> SFTPFileStore::moveItem(const Url& source, const Url& target) {
    const auto part = target.path + ".part";
    const SftpCommands upload{command("put", source.path, part),
                              command("rename", part, target.path)};
    const auto [status, output] = batch(target, upload);
    if (status != 0) {
        if (!objection(upload)) batch(target, {command("-rm", part)});
        return failure("Übertragung fehlgeschlagen: " + message(output));
    }
    return confirm(source, target);
}

Result<> SFTPFileStore::confirm(const Url& source, const Url& target) {
    const auto size = localStore_.fileSize(source);
    if (size && fileSize(target) != size) {
        batch(target, {command("-rm", target.path)});
        return failure("Größe stimmt nach der Übertragung nicht");
    }
    localStore_.removeItem(source);
    return {};
}

void SFTPFileStore::removeItem(const Url& url) {
    batch(url, {command("-rm", url.path), command("-rmdir", url.path)});
}

CommandResult SFTPFileStore::batch(const Url& server, const SftpCommands& commands) {
    constexpr std::int32_t notStarted = -1;
    const auto who = account(server);
    if (!who) return {notStarted, "Kein Rechner angegeben"};
    if (auto reason = objectionToAccount(*who)) return {notStarted, std::move(*reason)};
    const auto login = login_();
    if (login.kind == SSHLogin::Kind::missingKey)
        return {notStarted, std::string(missingKeyMessage)};
    if (auto reason = objection(commands)) return {notStarted, std::move(*reason)};
    return runner_->run(sftp_, arguments(*who, server.port, login), joined(commands));
}

std::optional<std::string> SFTPFileStore::account(const Url& url) {
    if (url.host.empty()) return {};
    return url.user.empty() ? url.host : url.user + "@" + url.host;
}

std::vector<std::string> SFTPFileStore::arguments(const std::string& account,
                                                  std::optional<std::uint16_t> port,
                                                  const SSHLogin& login) {
    std::vector<std::string> words;
    const auto add = [&words](std::initializer_list<std::string> more) {
        words.insert(words.end(), more);
    };
    if (login.kind == SSHLogin::Kind::appKey) {
        add({"-b", "-", "-o", "LogLevel=ERROR", "-F", "/dev/null", "-i", login.keyFile.path});
        add({"-o", "IdentitiesOnly=yes", "-o", "IdentityAgent=none"});
        add({"-o", "PasswordAuthentication=no", "-o", "KbdInteractiveAuthentication=no"});
        // Quoted, since the client splits the value at blanks.
        add({"-o", "UserKnownHostsFile=\"" + login.knownHosts.path + "\""});
        add({"-o", "GlobalKnownHostsFile=/dev/null", "-o", "StrictHostKeyChecking=accept-new"});
    } else {
        add({"-q", "-b", "-"});
    }
    add({"-o", "BatchMode=yes", "-o", "ConnectTimeout=10"});
    if (port) add({"-P", std::to_string(*port)});
    add({account});
    return words;
}

std::string SFTPFileStore::quoted(std::string_view path) {
    // Between quotes the client takes wildcards for plain characters; a backslash in front of
    // one would become part of the name.
    return quotedWith("\"\\", path);
}

std::string SFTPFileStore::quotedForListing(std::string_view path) {
    return quotedWith("\"\\{}", path);
}

SftpCommands SFTPFileStore::makeDirectories(std::string_view path) {
    SftpCommands commands;
    std::string prefix;
    for (const auto piece : std::views::split(path, '/')) {
        if (piece.empty()) continue;
        prefix.append("/").append(piece.begin(), piece.end());
        commands.push_back(command("-mkdir", prefix));
    }
    return commands;
}

std::vector<SFTPFileStore::Entry> SFTPFileStore::entries(std::string_view listing) {
    std::vector<Entry> found;
    for (const auto text : nonEmptyLines(listing)) {
        const auto line = listingLine(text);
        if (!line) continue;
        found.push_back(
            {line->isDirectory, line->size, std::string(lastPathComponent(line->path))});
    }
    return found;
}

std::string SFTPFileStore::message(const std::string& output) {
    for (auto line : std::views::reverse(nonEmptyLines(output))) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        const bool saysWhy =
            !line.empty() && !line.starts_with("sftp>") && !line.starts_with("Connection closed");
        if (saysWhy) return std::string(line);
    }
    return output;
}

}  // namespace bildkurier
