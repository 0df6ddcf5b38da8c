// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SFTPFileStore.h"

#include "FileName.h"
#include "ProbeFile.h"
#include "SftpComplaint.h"
#include "SftpKeyWalk.h"
#include "SftpOutput.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace bildkurier {
namespace {

constexpr std::string_view probeName = ".bildkurier-probe";
constexpr std::string_view farewell = "Connection closed";
constexpr std::string_view unreadableAnswer = "Die Antwort des Servers ist nicht zu lesen";

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

std::string joined(const SftpCommands& commands) {
    std::string script;
    for (const auto& line : commands) script.append(line).append("\n");
    return script;
}

/// Where a file is until all of it is there: beside `path`, under a name that file systems take
/// where they take its own.
std::string pathOfPart(const std::string& path) {
    constexpr std::string_view suffix = ".part";
    constexpr std::size_t longestName = 255;
    const auto isInsideCharacter = [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
    };
    const auto name = path.rfind('/') + 1;
    auto end = std::min(path.size(), name + longestName - suffix.size());
    while (end < path.size() && end > name && isInsideCharacter(path[end])) --end;
    return path.substr(0, end).append(suffix);
}

std::unexpected<Error> notUploaded(const std::string& reason) {
    return failure("Übertragung fehlgeschlagen: " + reason);
}

/// The line of the client's output that says why it failed. The view points into `output`.
std::optional<std::string_view> complaint(std::string_view output) {
    for (auto line : std::views::reverse(nonEmptyLines(output))) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        const bool saysWhy =
            !line.empty() && !line.starts_with("sftp>") && !line.starts_with(farewell);
        if (saysWhy) return line;
    }
    return {};
}

/// Whether the client bids farewell in the end: the connection was lost, or never came about.
bool endsInFarewell(std::string_view output) {
    const auto lines = nonEmptyLines(output);
    return !lines.empty() && lines.back().starts_with(farewell);
}

/// Whether the client has come to its first command: it was connected and logged in.
bool hasBegun(std::string_view output) {
    return std::ranges::any_of(nonEmptyLines(output),
                               [](std::string_view line) { return line.starts_with("sftp> "); });
}

/// Why the client failed, for human eyes: what it means, and in what words it or the server said
/// so.
std::string shown(const std::string& output) {
    const auto line = complaint(output);
    if (!line && endsInFarewell(output)) return fmt::format("{} ({})", lostConnection, farewell);
    // At times it falls silent in the middle of a command.
    if (!line) return hasBegun(output) ? std::string(lostConnection) : displayText(output);
    const auto cause = causeOf(*line, output);
    const auto meaning = meaningOf(cause);
    const std::string words = displayText(std::string(cause));
    return meaning ? fmt::format("{} ({})", *meaning, words) : words;
}

/// Why a folder may hold more than was listed, by how the client complains of that.
std::string whyUnlisted(const std::string& words) {
    return words.empty() ? std::string(unreadableAnswer) : shown(words);
}

/// The output as the client wrote it, as far as names go: the last one may end in blanks.
std::string wholeLines(const CommandResult& result) { return result.output + result.lastBlanks; }

std::string adviceToTry(const std::string& account, std::optional<std::uint16_t> port) {
    return fmt::format(
        "Der Server ist nicht zu erreichen oder lässt die Anmeldung nicht zu. Den Grund zeigt im "
        "Terminal der Befehl: sftp {}{}",
        port ? fmt::format("-P {} ", *port) : "", account);
}

/// Whether the client complains in `line` that it found nothing of that name, or may not look. When
/// the server did not answer, it complains of something else.
bool saysNothingIsThere(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line.starts_with("Can't ls: \"") && line.ends_with("\" not found");
}

/// Whether the client came to `removal`, and complains in `output` that there is nothing left to
/// remove: whoever probed the same folder meanwhile has done it.
bool removedByAnother(std::string_view removal, std::string_view output) {
    const auto isRemoval = [removal](std::string_view line) {
        return line.starts_with("sftp> ") && line.ends_with(removal);
    };
    return std::ranges::any_of(nonEmptyLines(output), isRemoval) &&
           complaint(output).value_or("").ends_with(": No such file or directory");
}

/// Whether `line` lists the file `url` itself, and not what a folder of that name holds.
bool lists(const SftpListingLine& line, const Url& url) {
    const auto name = withoutEscapes(url.lastComponent());
    const auto inside = withoutEscapes(url.appending(url.lastComponent()).path);
    const auto shown = withoutEscapes(line.path);
    return !line.isDirectory && shown != inside && lastPathComponent(shown) == name;
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

Result<> SFTPFileStore::walk(const Url& folder, SftpKeyWalk& walk) {
    while (walk.goesOn()) {
        const auto result = batch(folder, walk.commands());
        if (result.status != 0) return failure(shown(result.output));
        walk.read(wholeLines(result));
    }
    const auto itself = walk.unlisted().find(folder.path);
    if (itself != walk.unlisted().end()) return failure(whyUnlisted(itself->second));
    return {};
}

FileListing SFTPFileStore::listing(const Url& folder) {
    const auto number = record_.begin();
    SftpKeyWalk keyWalk(folder.path);
    const auto walked = walk(folder, keyWalk);
    const auto trouble = walked ? std::nullopt : std::optional(walked.error().message);
    record_.note(number, folder, trouble);
    for (const auto& [path, words] : keyWalk.unlisted()) {
        Url unlisted = folder;
        unlisted.path = path;
        record_.note(number, unlisted, whyUnlisted(words));
    }
    return {.keys = keyWalk.keys(), .trouble = trouble};
}

Result<> SFTPFileStore::knowWhatIsThere(const Url& url) const {
    const auto trouble = record_.troubleAbove(url);
    if (!trouble) return {};
    return failure(
        "Damit nichts doppelt geladen wird, muss sich der Ordner erst ganz auflisten lassen; "
        "zuletzt ging das nicht: " +
        *trouble);
}

Result<ContentReader::Listing> SFTPFileStore::files(const Url& folder) {
    SftpKeyWalk fileWalk(folder.path);
    if (auto walked = walk(folder, fileWalk); !walked) return std::unexpected(walked.error());
    const auto above = Url{.path = folder.path}.appending("x").path.size() - 1;
    ContentReader::Listing listing;
    listing.files.reserve(fileWalk.files().size());
    for (const auto& [path, size] : fileWalk.files())
        listing.files.push_back(
            {.place = {.folder = folder, .path = path.substr(above)}, .size = size});
    for (const auto& [path, words] : fileWalk.unlisted())
        listing.unreadable.push_back(path.substr(above));
    return listing;
}

std::vector<Result<PlacedFile>> SFTPFileStore::download(std::span<const ContentReader::File> files,
                                                        const Url& staging,
                                                        const std::string& prefix) {
    std::vector<Result<PlacedFile>> copies;
    copies.reserve(files.size());
    SftpCommands commands;
    for (std::size_t n = 0; n < files.size(); ++n) {
        const PlacedFile copy{.folder = staging, .path = fmt::format("{}{}", prefix, n)};
        // Where one fails the client goes on with the next.
        const Url target = staging.appending(copy.path);
        auto line =
            command("-get", files[n].place.folder.appending(files[n].place.path).path, target.path);
        localStore_.removeItem(target);
        if (const auto reason = objection({line})) {
            copies.emplace_back(failure(*reason));
        } else if (localStore_.fileExists(target)) {
            copies.emplace_back(failure("der Platz für eine Kopie ist nicht frei"));
        } else {
            copies.emplace_back(copy);
            commands.push_back(std::move(line));
        }
    }
    if (commands.empty()) return copies;
    const auto result = batch(files.front().place.folder, commands);
    for (std::size_t n = 0; n < files.size(); ++n) {
        if (!copies[n]) continue;
        const Url copy = staging.appending(copies[n]->path);
        if (localStore_.fileSize(copy) == files[n].size) continue;
        localStore_.removeItem(copy);
        copies[n] = failure("am Ziel nicht vollständig lesbar" +
                            (result.status == 0 ? std::string() : ": " + shown(result.output)));
    }
    return copies;
}

Result<bool> SFTPFileStore::look(const Url& url) {
    const auto result = batch(url, {listCommand(url)});
    if (result.status == 0) return true;
    if (std::ranges::any_of(nonEmptyLines(result.output), saysNothingIsThere)) return false;
    return failure(shown(result.output));
}

bool SFTPFileStore::fileExists(const Url& url) {
    const auto isThere = look(url);
    const std::lock_guard lock(doubtsMutex_);
    std::erase(doubts_, url);
    if (!isThere) doubts_.push_back(url);
    return isThere.value_or(false);
}

Result<> SFTPFileStore::dispelDoubt(const Url& target) {
    {
        const std::lock_guard lock(doubtsMutex_);
        if (std::ranges::find(doubts_, target) == doubts_.end()) return {};
    }
    const auto isThere = look(target);
    if (!isThere) return failure(isThere.error().message);
    const std::lock_guard lock(doubtsMutex_);
    std::erase(doubts_, target);
    if (*isThere) return failure("Eine Datei dieses Namens ist schon da");
    return {};
}

std::optional<std::int64_t> SFTPFileStore::fileSize(const Url& url) {
    const auto result = batch(url, {listCommand(url)});
    if (result.status != 0) return {};
    const auto listing = wholeLines(result);
    for (const auto text : nonEmptyLines(listing))
        if (const auto line = listingLine(text); line && lists(*line, url)) return line->size;
    return {};
}

/// One probe, from before it is put somewhere until after it has been removed.
class SFTPFileStore::UnderWay {
public:
    explicit UnderWay(SFTPFileStore& store) : store_(store) { count(1); }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;
    ~UnderWay() { count(-1); }

private:
    void count(int difference) {
        const std::lock_guard lock(store_.probesMutex_);
        store_.probes_ += difference;
        store_.probesEnded_.notify_all();
    }

    SFTPFileStore& store_;
};

void SFTPFileStore::awaitProbes(std::chrono::milliseconds patience) {
    std::unique_lock lock(probesMutex_);
    probesEnded_.wait_for(lock, patience, [this] { return probes_ == 0; });
}

bool SFTPFileStore::isWritableDirectory(const Url& url) {
    (void)localStore_.createDirectory(stagingRoot_);
    const ProbeFile probe(stagingRoot_.appending(probeName).path);
    if (!probe) return false;
    const UnderWay underWay(*this);
    const auto remoteProbe = url.appending(probeName);
    const auto removal = command("rm", remoteProbe.path);
    const auto result = batch(
        url, {command("cd", url.path), command("put", probe.path(), remoteProbe.path), removal});
    return result.status == 0 || removedByAnother(removal, result.output);
}

bool SFTPFileStore::isNetworkVolume(const Url& /*url*/) { return false; }

std::optional<std::int64_t> SFTPFileStore::availableCapacity(const Url& url) {
    const auto result = batch(url, {command("df", url.path)});
    if (result.status != 0) return {};
    return freeBytes(result.output);
}

Result<> SFTPFileStore::createDirectory(const Url& url) {
    auto commands = makeDirectories(url.path);
    commands.push_back(command("cd", url.path));
    const auto result = batch(url, commands);
    if (result.status != 0)
        return failure("Ordner lässt sich nicht anlegen: " + shown(result.output));
    return {};
}

Result<> SFTPFileStore::admitsFiles(const Url& folder) {
    return knowWhatIsThere(folder.appending("anything"));
}

Result<> SFTPFileStore::moveItem(const Url& source, const Url& target) {
    if (const auto known = knowWhatIsThere(target); !known)
        return notUploaded(known.error().message);
    const auto size = localStore_.fileSize(source);
    if (!size) return notUploaded("Die geladene Datei ist nicht mehr da");
    if (const auto isFree = dispelDoubt(target); !isFree)
        return notUploaded(isFree.error().message);
    const auto part = pathOfPart(target.path);
    const SftpCommands upload{command("put", source.path, part),
                              command("rename", part, target.path)};
    const auto result = batch(target, upload);
    if (result.status != 0) {
        if (!objection(upload)) batch(target, {command("-rm", part)});
        return notUploaded(shown(result.output));
    }
    if (fileSize(target) != size) {
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
    constexpr std::int32_t noConnection = 255;
    const auto who = account(server);
    if (!who) return {notStarted, "Kein Rechner angegeben"};
    if (auto reason = objectionToAccount(*who)) return {notStarted, std::move(*reason)};
    const auto login = login_();
    if (login.kind == SSHLogin::Kind::missingKey)
        return {notStarted, std::string(missingKeyMessage)};
    if (auto reason = objectionToLogin(login)) return {notStarted, std::move(*reason)};
    if (auto reason = objection(commands)) return {notStarted, std::move(*reason)};
    auto result = runner_->run(sftp_, arguments(*who, server.port, login), joined(commands));
    // Quiet as it is told to be with the user's own setup, the client keeps the reason to itself.
    const bool isSilent = login.kind == SSHLogin::Kind::userSSH && result.status == noConnection &&
                          !complaint(result.output);
    if (isSilent && hasBegun(result.output)) {
        result.output = lostConnection;
    } else if (isSilent) {
        result.output = adviceToTry(*who, server.port);
    }
    return result;
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
    return std::string(complaint(output).value_or(output));
}

}  // namespace bildkurier
