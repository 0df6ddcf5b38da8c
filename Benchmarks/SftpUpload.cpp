// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Comparison.h"
#include "Fixture.h"
#include "ProcessCommandRunner.h"
#include "SFTPFileStore.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

constexpr auto client = "/usr/bin/sftp";

/// The client's arguments for this computer without a connection, whose handshake would hide
/// what is measured.
const std::vector<std::string> withoutConnection{"-b", "-", "-D", "/usr/lib/openssh/sftp-server"};

class LocalClient final : public CommandRunner {
public:
    CommandResult run(const std::string& program, const std::vector<std::string>& /*arguments*/,
                      const std::optional<std::string>& input) override {
        return runner_.run(program, withoutConnection, input);
    }

private:
    ProcessCommandRunner runner_;
};

/// Files to upload, and where they come.
class Uploads {
public:
    Uploads(std::size_t files, std::size_t size) : files_(files), size_(size) {}

    void prepare() const {
        fs::remove_all(folder_);
        fs::create_directories(folder_ / "from");
        fs::create_directories(folder_ / "to");
        for (std::size_t n = 0; n < files_; ++n)
            shell(fmt::format("head -c {} /dev/zero >{}", size_, quoted(from(n))));
        shell("sync");
    }

    void byStore() const {
        SFTPFileStore store(std::make_shared<LocalClient>(), client, SSHLogin::userSSH,
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

private:
    static void tellClient(const std::string& script) {
        shell(fmt::format("printf '{}' | {} {} >/dev/null", script, client,
                          fmt::join(withoutConnection, " ")));
    }
    std::string from(std::size_t n) const { return folder_ / "from" / std::to_string(n); }
    std::string to(std::size_t n) const { return folder_ / "to" / std::to_string(n); }

    fs::path folder_ = fs::absolute(benchFolder() / "upload");
    std::size_t files_;
    std::size_t size_;
};

void uploadBesideSameRunsOfTheClient(benchmark::State& state) {
    constexpr std::size_t files = 50;
    constexpr double limit = 5;  // ms
    const Uploads uploads(files, 20'000);
    compare(state, {.ours = whole([&] { uploads.byStore(); }),
                    .theirs = whole([&] { uploads.byClient(); }),
                    .prepare = [&] { uploads.prepare(); }});
    const double own =
        1000 * (state.counters["ours_s"] - state.counters["theirs_s"]) / static_cast<double>(files);
    judge(state, own, limit, "ms a file");
}

void uploadBesideBarePut(benchmark::State& state) {
    const Uploads uploads(1, 2'000'000'000);
    compare(state, {.ours = whole([&] { uploads.byStore(); }),
                    .theirs = whole([&] { uploads.byBarePut(); }),
                    .prepare = [&] { uploads.prepare(); },
                    .limit = 1.05});
}

BENCHMARK(uploadBesideSameRunsOfTheClient)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(uploadBesideBarePut)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bildkurier
