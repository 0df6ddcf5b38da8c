// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Comparison.h"
#include "Fixture.h"
#include "ProcessCommandRunner.h"
#include "SFTPFileStore.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

constexpr auto client = "/usr/bin/sftp";

using Words = std::vector<std::string>;

/// The client's arguments for this computer without a connection, whose handshake would hide
/// what is measured.
Words withoutConnection() { return {"-b", "-", "-D", "/usr/lib/openssh/sftp-server"}; }

/// The client's arguments for this computer over a connection like any other: to a server that
/// is started for it, with keys of its own.
Words withConnection() {
    const fs::path folder = fs::absolute(benchFolder() / "ssh");
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const std::string key : {"host", "key"})
        shell("ssh-keygen -q -t ed25519 -N '' -f " + quoted(folder / key));
    if (::geteuid() == 0)
        shell("mkdir -p /run/sshd");  // without which root's server does not start
    const fs::path config = folder / "config";
    std::ofstream(config) << fmt::format(
        "HostKey {0}/host\n"
        "AuthorizedKeysFile {0}/key.pub\n"
        "StrictModes no\n"
        "UsePAM yes\n"
        "PidFile none\n"
        "Subsystem sftp internal-sftp\n",
        folder.string());
    Words words{"-b", "-", "-F", "/dev/null", "-i", folder / "key"};
    for (const std::string& option :
         {std::string("IdentitiesOnly=yes"), std::string("IdentityAgent=none"),
          std::string("LogLevel=ERROR"), std::string("BatchMode=yes"),
          std::string("StrictHostKeyChecking=no"), std::string("UserKnownHostsFile=/dev/null"),
          "ProxyCommand=/usr/sbin/sshd -i -f " + quoted(config)})
        words.insert(words.end(), {"-o", option});
    words.emplace_back("localhost");
    return words;
}

class LocalClient final : public CommandRunner {
public:
    explicit LocalClient(Words arguments) : arguments_(std::move(arguments)) {}

    CommandResult run(const std::string& program, const Words& /*arguments*/,
                      const std::optional<std::string>& input) override {
        return runner_.run(program, arguments_, input);
    }

private:
    Words arguments_;
    ProcessCommandRunner runner_;
};

/// Files to upload, and where they come.
class Uploads {
public:
    Uploads(fs::path folder, std::size_t files, std::size_t size, Words arguments)
        : folder_(std::move(folder)),
          files_(files),
          size_(size),
          arguments_(std::move(arguments)) {}

    /// The files have just been written, so that nobody has to read them from the disk.
    void prepare() const {
        fs::remove_all(folder_);
        fs::create_directories(folder_ / "from");
        fs::create_directories(folder_ / "to");
        for (std::size_t n = 0; n < files_; ++n)
            shell(fmt::format("head -c {} /dev/zero >{}", size_, quoted(from(n))));
        shell("sync");
    }

    void byStore() const {
        SFTPFileStore store(std::make_shared<LocalClient>(arguments_), client, SSHLogin::userSSH,
                            Url::file(folder_ / "staging"));
        for (std::size_t n = 0; n < files_; ++n) {
            const Url target{.scheme = "sftp", .host = "localhost", .path = to(n)};
            if (const auto moved = store.moveItem(Url::file(from(n)), target); !moved)
                throw std::runtime_error(moved.error().message);
        }
    }

    /// The same runs of the client.
    void byClient() const {
        for (std::size_t n = 0; n < files_; ++n) {
            tellClient(fmt::format("put \"{0}\" \"{1}.part\"\\nrename \"{1}.part\" \"{1}\"\\n",
                                   from(n), to(n)));
            tellClient(fmt::format("ls -ln \"{}\"\\n", to(n)));
            fs::remove(from(n));
        }
    }

    void byBarePut() const {
        for (std::size_t n = 0; n < files_; ++n)
            tellClient(fmt::format("put \"{}\" \"{}\"\\n", from(n), to(n)));
    }

    void clear() const { fs::remove_all(folder_); }

private:
    void tellClient(const std::string& script) const {
        Words words;
        std::ranges::transform(arguments_, std::back_inserter(words), quoted);
        shell(fmt::format("printf '{}' | {} {} >/dev/null", script, client, fmt::join(words, " ")));
    }
    std::string from(std::size_t n) const { return folder_ / "from" / std::to_string(n); }
    std::string to(std::size_t n) const { return folder_ / "to" / std::to_string(n); }

    fs::path folder_;
    std::size_t files_;
    std::size_t size_;
    Words arguments_;
};

void uploadBesideSameRunsOfTheClient(benchmark::State& state) {
    constexpr std::size_t files = 50;
    constexpr double limit = 5;  // ms
    const Uploads uploads(fs::absolute(benchFolder() / "upload"), files, 20'000,
                          withoutConnection());
    compare(state, {.ours = whole([&] { uploads.byStore(); }),
                    .theirs = whole([&] { uploads.byClient(); }),
                    .prepare = [&] { uploads.prepare(); }});
    const double own =
        1000 * (state.counters["ours_s"] - state.counters["theirs_s"]) / static_cast<double>(files);
    judge(state, own, limit, "ms a file");
    uploads.clear();
}

/// The put alone leaves the file where it was and takes the client's word for it.
void uploadBesideBarePut(benchmark::State& state) {
    // Written to a disk, so large a file takes now 8 s and now 11.
    const Uploads uploads(memoryFolder(), 1, 2'000'000'000, withConnection());
    compare(state, {.ours = whole([&] { uploads.byStore(); }),
                    .theirs = whole([&] { uploads.byBarePut(); }),
                    .prepare = [&] { uploads.prepare(); },
                    .limit = 1.05});
    uploads.clear();
}

BENCHMARK(uploadBesideSameRunsOfTheClient)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(uploadBesideBarePut)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bildkurier
