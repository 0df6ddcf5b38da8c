// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Comparison.h"
#include "Fixture.h"
#include "MockedCamera.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// A virtual camera with a card, at a USB that is mocked for the programs run here.
class AttachedCamera {
public:
    /// As about every camera of today, it sends long files in pieces, unless it cannot.
    explicit AttachedCamera(const fs::path& card, bool inPieces = true) {
        fs::remove_all(folder_);
        const auto write = [this](const fs::path& file, const std::string& text) {
            fs::create_directories((folder_ / file).parent_path());
            std::ofstream(folder_ / file) << text << "\n";
        };
        write("bus/1-1/busnum", "1");
        write("bus/1-1/devnum", "1");
        write("bus/1-1/idVendor", "1209");
        write("bus/1-1/idProduct", "0001");
        write("bus/1-1/virtual-camera",
              fmt::format("store1={}\npartial={:d}", fs::absolute(card).string(), inPieces));
        write("usb.umockdev", MockedCamera().description());
        prepare();
    }

    const fs::path& target() const { return target_; }
    void prepare() const {
        fs::remove_all(target_);
        fs::create_directories(target_);
        shell("sync");
    }

    std::string ours(const std::string& command) const {
        return fmt::format(
            "umockdev-run -d {} -- {} {} --to {} --no-by-type", quoted(folder_ / "usb.umockdev"),
            quoted(fs::read_symlink("/proc/self/exe").parent_path() / "bildkurier-cli"), command,
            quoted(target_));
    }
    std::string theirs(const std::string& arguments) const {
        return fmt::format("cd {} && gphoto2 {}", quoted(target_), arguments);
    }
    /// The command with the camera attached, and nothing of the user's own.
    std::string attached(const std::string& command) const {
        return fmt::format("export IOLIBS={} VIRTUAL_CAMERAS={} XDG_CONFIG_HOME={}; {} >/dev/null",
                           quoted(VIRTUAL_CAMERA_DRIVERS), quoted(folder_ / "bus"),
                           quoted(folder_ / "config"), command);
    }
    void run(const std::string& command) const { shell(attached(command)); }

private:
    fs::path folder_ = fs::absolute(benchFolder() / "usb");
    fs::path target_ = folder_ / "target";
};

void usbImportBesideGphoto(benchmark::State& state) {
    const AttachedCamera camera(
        made({.name = "usb-large", .files = 100, .folders = 1, .size = 10'000'000}),
        state.range(0) != 0);
    compare(state, {.ours = whole([&] { camera.run(camera.ours("import")); }),
                    .theirs = whole([&] { camera.run(camera.theirs("--get-all-files")); }),
                    .prepare = [&] { camera.prepare(); },
                    .limit = 1});
}

void usbListingBesideGphoto(benchmark::State& state) {
    const AttachedCamera camera(
        made({.name = "usb-many", .files = 20'000, .folders = 20, .size = 1'000, .sparse = true}));
    compare(state, {.ours = whole([&] { camera.run(camera.ours("plan")); }),
                    .theirs = whole([&] { camera.run(camera.theirs("--list-files")); }),
                    .limit = 1});
}

/// The highest resident memory of any program that a command runs, in megabytes.
double peakOf(const std::string& command) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        ::_exit(EXIT_FAILURE);
    }
    int status = 0;
    rusage used{};
    if (::wait4(child, &status, 0, &used) != child || status != 0)
        throw std::runtime_error("failed: " + command);
    return static_cast<double>(used.ru_maxrss) * 1024 / 1e6;
}

void usbImportMemory(benchmark::State& state) {
    const AttachedCamera camera(made({.name = "usb-movie",
                                      .files = 1,
                                      .folders = 1,
                                      .size = 2'000'000'000,
                                      .sparse = true,
                                      .suffix = ".MP4"}));
    std::vector<double> over;
    while (state.KeepRunning()) {
        camera.prepare();
        const double idle = peakOf(camera.attached(camera.ours("plan")));
        over.push_back(peakOf(camera.attached(camera.ours("import"))) - idle);
    }
    judge(state, median(over), 60, "MB");
}

BENCHMARK(usbImportBesideGphoto)
    ->ArgName("in_pieces")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(usbListingBesideGphoto)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(usbImportMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bildkurier
