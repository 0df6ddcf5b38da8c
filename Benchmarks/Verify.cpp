// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Comparison.h"
#include "FileDescriptor.h"
#include "Fixture.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// Pages of the file that are in memory.
std::int64_t cachedPages(const FileDescriptor& file, std::size_t size) {
    void* const mapped = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (mapped == MAP_FAILED) throw std::runtime_error("mmap failed");
    std::vector<unsigned char> pages(size / static_cast<std::size_t>(::getpagesize()) + 1);
    const int asked = ::mincore(mapped, size, pages.data());
    ::munmap(mapped, size);
    if (asked != 0) throw std::runtime_error("mincore failed");
    return std::ranges::count_if(pages, [](unsigned char page) { return (page & 1U) != 0; });
}

/// Takes everything below `folder` out of the cache.
void forget(const fs::path& folder) {
    std::int64_t left = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        const FileDescriptor file(::open(entry.path().c_str(), O_RDONLY));
        ::fsync(file.get());
        ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED);
        left += cachedPages(file, entry.file_size());
    }
    if (left > 0) throw std::runtime_error(fmt::format("{} pages stay in the cache", left));
}

/// Bytes that children of this process have had read from media so far.
std::int64_t bytesFromMedia() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_inblock * 512;
}

void verify(const fs::path& card, const fs::path& target) {
    const auto program = fs::read_symlink("/proc/self/exe").parent_path() / "bildkurier-cli";
    shell(fmt::format("{} verify --content --card {} --to {} >/dev/null", quoted(program),
                      quoted(card), quoted(target)));
}

/// Both from the medium; `from_medium` is the share of the bytes that ours got there.
void verifyBesideCmp(benchmark::State& state, std::size_t files, std::size_t size) {
    const std::string name = fmt::format("verify-{}", files);
    const fs::path card = made({.name = name, .files = files, .folders = 2, .size = size});
    // The same bytes once more.
    const fs::path target =
        made({.name = name + "-copy", .files = files, .folders = 2, .size = size});
    double share = 1;
    compare(state, {.ours =
                        [&] {
                            const auto before = bytesFromMedia();
                            const double seconds = whole([&] { verify(card, target); })();
                            const auto read = static_cast<double>(bytesFromMedia() - before);
                            share = std::min(share, read / static_cast<double>(2 * files * size));
                            return seconds;
                        },
                    .theirs = whole([&] {
                        shell(
                            fmt::format("cd {} && find . -type f -print0 | "
                                        "xargs -0 -I% cmp % {}/%",
                                        quoted(card), quoted(fs::absolute(target))));
                    }),
                    .prepare =
                        [&] {
                            forget(card);
                            forget(target);
                        },
                    .limit = 1 / 0.8});
    state.counters["from_medium"] = share;
    // Whoever is answered by the cache is quicker, and proves nothing.
    if (share < 0.99) judge(state, 1 - share, 0.01, "from_cache");
}

void verifyPicturesBesideCmp(benchmark::State& state) { verifyBesideCmp(state, 400, 2'500'000); }

void verifySmallFilesBesideCmp(benchmark::State& state) { verifyBesideCmp(state, 2'000, 5'000); }

void verifyFilmsBesideCmp(benchmark::State& state) { verifyBesideCmp(state, 4, 250'000'000); }

BENCHMARK(verifyPicturesBesideCmp)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(verifySmallFilesBesideCmp)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(verifyFilmsBesideCmp)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bildkurier
