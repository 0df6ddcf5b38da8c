// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardModel.h"
#include "Comparison.h"
#include "ExifCaptureDates.h"
#include "FileDescriptor.h"
#include "Fixture.h"
#include "LocalFileStore.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

fs::path program(const std::string& name) {
    return fs::read_symlink("/proc/self/exe").parent_path() / name;
}

void scan(const fs::path& folder) {
    if (LocalFileStore().existingFileKeys(Url::file(folder)).empty()) {
        throw std::runtime_error("nothing found");
    }
}

void scanBesideFind(benchmark::State& state) {
    const fs::path tree = made(
        {.name = "scan", .files = 200'000, .folders = 250, .size = 10'000'000, .sparse = true});
    compare(state, {.ours = whole([&] { scan(tree); }),
                    .theirs = whole([&] {
                        shell("find " + quoted(tree) + " -type f -printf '%f|%s\\n' >/dev/null");
                    }),
                    .limit = 0.7});
}

void importCard(const fs::path& card, const fs::path& target) {
    shell(fmt::format("{} import --card {} --to {} --no-by-date --no-by-type >/dev/null",
                      quoted(program("bildkurier-cli")), quoted(card), quoted(target)));
}

void importBesideCopyAndSync(benchmark::State& state) {
    const fs::path card = made({.name = "large", .files = 200, .folders = 2, .size = 25'000'000});
    const fs::path target = benchFolder() / "target";
    shell("cat " + quoted(card) + "/DCIM/*/* >/dev/null");
    compare(state, {.ours = whole([&] { importCard(card, target); }),
                    .theirs = whole([&] {
                        shell("cp -r " + quoted(card) + " " + quoted(target) + " && sync");
                    }),
                    .prepare = [&] { shell("rm -rf " + quoted(target) + " && sync"); },
                    .limit = 1.15});
    fs::remove_all(target);
}

void flush(const FileDescriptor& file) {
    if (fsync(file.get()) != 0) throw std::runtime_error("fsync failed");
}

/// The plain copy of somebody who wants every file on the disk.
void copyWithFlushes(const fs::path& card, const fs::path& target) {
    fs::create_directories(target);
    for (const auto& entry : fs::recursive_directory_iterator(card)) {
        if (!entry.is_regular_file()) continue;
        std::ifstream source(entry.path(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(source), {});
        const fs::path copy = target / entry.path().filename();
        const FileDescriptor file(::open(copy.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666));
        if (write(file.get(), bytes.data(), bytes.size()) != std::ssize(bytes)) {
            throw std::runtime_error("write failed");
        }
        flush(file);
        flush(FileDescriptor(::open(target.c_str(), O_RDONLY | O_DIRECTORY)));
    }
}

void importBesideCopyWithFlushes(benchmark::State& state) {
    const fs::path card = made({.name = "small", .files = 10'000, .folders = 10, .size = 20'000});
    const fs::path target = benchFolder() / "target";
    shell("cat " + quoted(card) + "/DCIM/*/* >/dev/null");
    compare(state, {.ours = whole([&] { importCard(card, target); }),
                    .theirs = whole([&] { copyWithFlushes(card, target); }),
                    .prepare = [&] { shell("rm -rf " + quoted(target) + " && sync"); },
                    .limit = 1.3});
    fs::remove_all(target);
}

constexpr std::size_t manyFiles = 100'000;

/// Films, for nobody looks into these for their dates.
Fixture full(const std::string& name) {
    return {.name = name,
            .files = manyFiles,
            .folders = 100,
            .size = 1'000,
            .sparse = true,
            .suffix = ".MP4"};
}

void planCard(const fs::path& card, const fs::path& target) {
    CardModel run(card, target);
    run.runUntilReady();
    if (!run.model().newFiles().empty()) throw std::runtime_error("a file is missing");
}

void planBesideTwoScans(benchmark::State& state) {
    const fs::path card = made(full("films"));
    const fs::path target = made(full("imported-films"));
    compare(state, {.ours = whole([&] { planCard(card, target); }),
                    .theirs = whole([&] {
                        scan(card);
                        scan(target);
                    }),
                    .limit = 2});
}

/// Seconds from the moment in which the card has been read.
double secondsUntilReady(const fs::path& card, const fs::path& target) {
    using Phase = ImportModel::Phase;
    CardModel run(card, target);
    std::optional<Instant> read;
    const Handle observation = run.model().observe([&] {
        const Phase phase = run.model().phase();
        if (!read && (phase == Phase::ready || phase == Phase::checking))
            read = run.queue().taskBegan();
    });
    run.runUntilReady();
    if (!read) throw std::runtime_error("the card was never read");
    return (run.queue().now() - *read).count();
}

void readyBesideTwoScans(benchmark::State& state) {
    const fs::path card = made(full("films"));
    const fs::path target = made(full("imported-films"));
    compare(state, {.ours = [&] { return secondsUntilReady(card, target); },
                    .theirs = whole([&] {
                        scan(card);
                        scan(target);
                    }),
                    .limit = 3});
}

constexpr int thousands = 2'000;

/// The longest step of the main queue, in milliseconds, while so many files of a full card are
/// imported twice over: cancelled, begun again with what is found to be missing still, and
/// cancelled again unless that was all.
double longestTaskOfImport(const fs::path& card, const fs::path& target, int second) {
    CardModel run(card, target);
    ImportModel& model = run.model();
    run.runUntilReady();
    if (model.newFiles().size() != manyFiles) throw std::runtime_error("a file is there");
    run.queue().forget();
    for (const int count : {thousands, second}) {
        run.queue().post([&] {
            // As whoever shows what will be loaded does.
            benchmark::DoNotOptimize(model.newByType());
            model.startImport();
            if (model.phase() != ImportModel::Phase::importing)
                throw std::runtime_error(model.status());
        });
        const auto isImporting = [&] { return model.phase() == ImportModel::Phase::importing; };
        run.runUntil(isImporting);
        run.runUntil([&] { return !isImporting() || model.progress().done >= count; });
        run.queue().post([&] { model.cancelImport(); });
        run.runUntilReady();
    }
    return run.queue().longestTask().count() * 1000;
}

void longestTask(benchmark::State& state) {
    const fs::path card = made(full("films"));
    // A disk makes steps wait, and would take minutes to flush the whole card, which goes where
    // nothing is flushed.
    const fs::path disk = benchFolder() / "some-films";
    std::vector<double> milliseconds;
    const auto measure = [&](const fs::path& target, int count) {
        fs::remove_all(target);
        fs::create_directory(target);
        milliseconds.push_back(longestTaskOfImport(card, target, count));
        fs::remove_all(target);
    };
    for ([[maybe_unused]] const auto _ : state) {
        measure(disk, thousands);
        measure(memoryFolder(), manyFiles);
    }
    judge(state, std::ranges::max(milliseconds), 50, "ms");
}

/// In a process of its own, whose memory is that of the plan alone.
void planMemory(benchmark::State& state) {
    const fs::path card = made(full("films"));
    const fs::path target = made(full("imported-films"));
    const fs::path answer = benchFolder() / "memory";
    for ([[maybe_unused]] const auto _ : state) {
        shell(fmt::format("{} --plan {} {} >{}", quoted(program("bildkurier-bench")), quoted(card),
                          quoted(target), quoted(answer)));
    }
    std::int64_t bytes = 0;
    std::ifstream(answer) >> bytes;
    judge(state, static_cast<double>(bytes) / 1e6, 150, "MB");
}

/// This process's highest resident memory so far, in bytes.
std::int64_t peakMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word != "VmHWM:") continue;
        std::int64_t kibibytes = 0;
        status >> kibibytes;
        return kibibytes * 1024;
    }
    throw std::runtime_error("no VmHWM in /proc/self/status");
}

void captureDate(benchmark::State& state) {
    const fs::path card = benchFolder() / "sample";
    fs::remove_all(card);
    shell(quoted(program("bildkurier-sample-card")) + " " + quoted(card));
    std::vector<std::string> pictures;
    for (const auto& entry : fs::recursive_directory_iterator(card)) {
        const std::string name = entry.path().filename();
        if (!name.starts_with(".") && name.ends_with(".JPG")) pictures.push_back(entry.path());
    }
    ExifCaptureDates dates;
    const Measurement readAll = whole([&] {
        for (const std::string& picture : pictures) {
            if (!dates.captureDate(picture)) throw std::runtime_error("no date in " + picture);
        }
    });
    double seconds = 0;
    for ([[maybe_unused]] const auto _ : state) seconds += readAll();
    state.counters["per_file"] =
        seconds / static_cast<double>(state.iterations() * std::ssize(pictures));
}

BENCHMARK(scanBesideFind)->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(planBesideTwoScans)->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(readyBesideTwoScans)->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(longestTask)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(planMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(captureDate)->Unit(benchmark::kMillisecond);
BENCHMARK(importBesideCopyWithFlushes)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(importBesideCopyAndSync)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bildkurier

int main(int argc, char** argv) {
    if (argc == 4 && std::string_view(argv[1]) == "--plan") {
        bildkurier::planCard(argv[2], argv[3]);
        fmt::print("{}\n", bildkurier::peakMemory());
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return bildkurier::keptAllLimits() ? 0 : 1;
}
