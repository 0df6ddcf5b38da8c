// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppSSHKeyring.h"

#include "LetterCase.h"
#include "PrivateFiles.h"
#include "SystemError.h"
#include "UserFolders.h"
#include "Utf8Text.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

constexpr std::size_t tooLarge = 65536;  // bytes
constexpr std::uint16_t usualPort = 22;
constexpr auto cannotStore = "Schlüssel lässt sich nicht speichern";
constexpr auto noPrivateKey =
    "Das ist kein privater ssh-Schlüssel (z. B. ~/.ssh/id_ed25519, nicht die .pub-Datei).";
constexpr auto hasPassphrase =
    "Der Schlüssel ist mit einer Passphrase geschützt. Die App fragt nie nach einem Passwort; "
    "bitte einen Schlüssel ohne Passphrase nehmen oder hier einen neuen erzeugen.";

/// `sentence`, and what the system says about `error`.
std::unexpected<Error> systemFailure(const char* sentence, int error) {
    return failure(fmt::format("{}: {}", sentence, systemError(error).message));
}

bool exists(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

bool mayBePrivateKey(std::string_view contents) {
    return contents.size() < tooLarge && isUtf8(contents) &&
           contents.find("PRIVATE KEY-----") != std::string_view::npos;
}

bool isPublicKey(std::string_view output) {
    return output.starts_with("ssh-") || output.starts_with("ecdsa-");
}

/// The parts between `separators` that are not empty.
std::vector<std::string_view> pieces(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> found;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
        if (text.empty()) return found;
        const auto piece = text.substr(0, text.find_first_of(separators));
        found.push_back(piece);
        text.remove_prefix(piece.size());
    }
}

/// The fingerprint in one line of a listing: of a key, as "256 SHA256:… comment (ED25519)", or
/// of a host, as "nas ED25519 SHA256:…".
std::optional<std::string> fingerprintInLine(std::string_view line) {
    const auto words = pieces(line, " ");
    const auto digest = std::ranges::find_if(
        words, [](std::string_view word) { return word.starts_with("SHA256:"); });
    if (digest == words.end()) return std::nullopt;
    if (words.back().starts_with('(') && digest + 1 != words.end())
        return fmt::format("{} {}", *digest, words.back());
    if (digest == words.begin()) return std::string(*digest);
    return fmt::format("{} ({})", *digest, *(digest - 1));
}

}  // namespace

AppSSHKeyring::AppSSHKeyring(std::string directory, std::shared_ptr<CommandRunner> runner,
                             std::string keygen)
    : directory_(std::move(directory)), runner_(std::move(runner)), keygen_(std::move(keygen)) {}

std::string AppSSHKeyring::standardDirectory() { return dataFolder() + "/Bildkurier/ssh"; }

std::string AppSSHKeyring::path(std::string_view name) const {
    return fmt::format("{}/{}", directory_, name);
}

SSHLogin AppSSHKeyring::login(bool needsOwnKey) const {
    if (hasKey()) return SSHLogin::appKey(Url::file(keyFile()), Url::file(knownHosts()));
    return needsOwnKey ? SSHLogin::missingKey() : SSHLogin::userSSH();
}

bool AppSSHKeyring::hasKey() const { return hasPrivateKey() && exists(publicKeyFile()); }

bool AppSSHKeyring::hasPrivateKey() const { return exists(keyFile()); }

std::optional<std::string> AppSSHKeyring::publicKey() const {
    if (!hasKey()) return std::nullopt;
    const auto contents = readBeginning(publicKeyFile(), tooLarge);
    if (!contents || !isUtf8(*contents)) return std::nullopt;
    const std::string key = trimmed(*contents);
    return key.empty() ? std::nullopt : std::optional(key);
}

std::optional<std::string> AppSSHKeyring::keyFingerprint() const {
    if (!hasKey()) return std::nullopt;
    return listedFingerprint({"-l", "-f", publicKeyFile()});
}

Result<> AppSSHKeyring::generate() {
    if (const auto prepared = prepareDirectory(); !prepared) return prepared;
    removeKey();
    const auto made = runner_->run(
        keygen_, {"-q", "-t", "ed25519", "-N", "", "-C", "bildkurier", "-f", keyFile()},
        std::nullopt);
    if (made.status != 0 || !hasKey()) {
        removeKey();
        return failure(fmt::format("Schlüssel lässt sich nicht erzeugen: {}", made.output));
    }
    // The tool has done so from the start; it is only made sure.
    if (::chmod(keyFile().c_str(), 0600) != 0) return std::unexpected(systemError(errno));
    return {};
}

Result<> AppSSHKeyring::importKey(const Url& file) {
    const auto contents = readBeginning(file.path, tooLarge);
    if (!contents) return systemFailure("Datei lässt sich nicht lesen", contents.error());
    if (!mayBePrivateKey(*contents)) return failure(noPrivateKey);
    if (const auto prepared = prepareDirectory(); !prepared) return prepared;
    const std::string candidate = candidateFile();
    if (writePrivateFile(candidate, *contents) != 0) {
        return failure(fmt::format("{}.", cannotStore));
    }
    const auto derived = runner_->run(keygen_, {"-y", "-P", "", "-f", candidate}, std::nullopt);
    if (derived.status == 0 && isPublicKey(derived.output)) {
        return adopt(derived.output);
    }
    ::unlink(candidate.c_str());
    const bool isLocked = lowerCased(derived.output).find("passphrase") != std::string::npos;
    return failure(isLocked ? hasPassphrase : "Schlüssel wird von ssh-keygen nicht angenommen.");
}

Result<> AppSSHKeyring::adopt(std::string_view publicKey) {
    // Its comment comes from the file, and must not bring along a line of its own: whoever gives
    // the key to a server would let in another one with it.
    const std::string line =
        fmt::format("{}\n", publicKey.substr(0, publicKey.find_first_of("\r\n")));
    removePair();
    int error = std::rename(candidateFile().c_str(), keyFile().c_str()) == 0 ? 0 : errno;
    if (error == 0) error = writePrivateFile(publicCandidateFile(), line);
    if (error == 0 && std::rename(publicCandidateFile().c_str(), publicKeyFile().c_str()) != 0)
        error = errno;
    if (error == 0) {
        flushNames(directory_);
        return {};
    }
    removeKey();
    return systemFailure(cannotStore, error);
}

void AppSSHKeyring::removePair() {
    ::unlink(keyFile().c_str());
    ::unlink(publicKeyFile().c_str());
}

void AppSSHKeyring::removeKey() {
    removePair();
    ::unlink(candidateFile().c_str());
    ::unlink(publicCandidateFile().c_str());
}

std::optional<std::string> AppSSHKeyring::hostFingerprint(const std::string& host,
                                                          Port port) const {
    if (!exists(knownHosts())) return std::nullopt;
    return listedFingerprint({"-l", "-F", hostPattern(host, port), "-f", knownHosts()});
}

void AppSSHKeyring::forgetHost(const std::string& host, Port port) {
    if (!exists(knownHosts())) return;
    runner_->run(keygen_, {"-R", hostPattern(host, port), "-f", knownHosts()}, std::nullopt);
    ::unlink(path("known_hosts.old").c_str());
}

std::optional<std::string> AppSSHKeyring::fingerprint(std::string_view listing) {
    for (const auto line : pieces(listing, "\r\n")) {
        if (line.starts_with('#')) continue;
        if (auto found = fingerprintInLine(line)) return found;
    }
    return std::nullopt;
}

std::string AppSSHKeyring::hostPattern(const std::string& host, Port port) {
    const auto number = port.value_or(usualPort);
    const bool isBracketed = host.starts_with('[') && host.ends_with(']');
    const std::string bare = isBracketed ? host.substr(1, host.size() - 2) : host;
    return number == usualPort ? bare : fmt::format("[{}]:{}", bare, number);
}

std::optional<std::string> AppSSHKeyring::listedFingerprint(
    const std::vector<std::string>& arguments) const {
    const auto listed = runner_->run(keygen_, arguments, std::nullopt);
    return listed.status == 0 ? fingerprint(listed.output) : std::nullopt;
}

Result<> AppSSHKeyring::prepareDirectory() const {
    const int error = makePrivateFolder(directory_);
    if (error != 0) return systemFailure("Datenordner lässt sich nicht anlegen", error);
    return {};
}

}  // namespace bildkurier
