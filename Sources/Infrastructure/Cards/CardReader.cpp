// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardReader.h"

#include "CardClock.h"
#include "DirectoryWalk.h"
#include "FileName.h"
#include "LetterCase.h"
#include "OpenBelow.h"
#include "Workers.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

std::size_t workerCount() {
    constexpr std::size_t most = 8;
    return std::clamp<std::size_t>(2 * std::size_t{std::thread::hardware_concurrency()}, 1, most);
}

/// Folders that file systems keep for themselves.
bool isFileSystemsOwn(std::string_view folder) {
    constexpr auto names =
        std::to_array<std::string_view>({"lost+found", "system volume information"});
    return std::ranges::find(names, lowerCased(lastPathComponent(folder))) != names.end();
}

/// Lists a card; each worker of the walk writes to a listing of its own.
class Lister {
public:
    Lister(const CardSession& session, const FileDescriptor& root)
        : session_(session),
          root_(root),
          clock_(session.place().mount.type, session.place().mount.options, kernelMinutesWest()),
          listings_(workerCount()) {}

    CardListing list() {
        walkFiles(
            fmt::format("/proc/self/fd/{}", root_.get()),
            {.workers = listings_.size(), .cancelled = [this] { return session_.hasEnded(); }},
            {.file = [this](std::size_t worker,
                            const WalkedFile& file) { add(listings_[worker], file); },
             .unreadable = [this](std::size_t worker, std::string_view folder,
                                  int error) { addUnreadable(listings_[worker], folder, error); },
             .hidden = [this](
                           std::size_t worker, std::string_view folder,
                           std::string_view name) { addHidden(listings_[worker], folder, name); }});
        return joined();
    }

private:
    static std::vector<CardEntry>& filesIn(CardListing& listing, std::string_view folder) {
        const auto found = listing.find(folder);
        return found != listing.end() ? found->second : listing[std::string(folder)];
    }

    void add(CardListing& listing, const WalkedFile& file) const {
        CardEntry& entry = filesIn(listing, file.folder).emplace_back();
        entry.name = file.name;
        entry.size = file.size;
        entry.modified = clock_.date(file.modified);
        entry.type = cardFileType(file.name);
    }

    static void addHidden(CardListing& listing, std::string_view folder, std::string_view name) {
        filesIn(listing, folder).emplace_back().name = name;
    }

    void addUnreadable(CardListing& listing, std::string_view folder, int error) const {
        if (isFileSystemsOwn(folder)) return;
        const std::size_t slash = folder.rfind('/');
        const auto parent = folder.substr(0, slash == std::string_view::npos ? 0 : slash);
        CardEntry& entry = filesIn(listing, parent).emplace_back();
        entry.name = lastPathComponent(folder.empty() ? session_.place().root : folder);
        // What is in it may be of any day up to now.
        entry.modified = std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
        entry.error = error;
    }

    CardListing joined() {
        CardListing all;
        for (CardListing& listing : listings_) {
            all.merge(listing);
            // What is left lies in folders that another worker was in as well.
            for (auto& [folder, files] : listing)
                std::ranges::move(files, std::back_inserter(filesIn(all, folder)));
        }
        return all;
    }

    const CardSession& session_;
    const FileDescriptor& root_;
    CardClock clock_;
    std::vector<CardListing> listings_;
};

void readDates(const CardSession& session, const FileDescriptor& root, CaptureDates& captureDates,
               CardCatalogue& catalogue) {
    const auto dateOf = [&](const CardEntry& photo) -> std::optional<Date> {
        const FileDescriptor file = openBelow(root, catalogue.path(photo), O_RDONLY | O_NONBLOCK);
        struct stat found{};
        if (!file || ::fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode)) return {};
        return captureDates.captureDate(fmt::format("/proc/self/fd/{}", file.get()));
    };
    std::atomic<std::size_t> next = 0;
    runWorkers(workerCount(), [&](std::size_t) {
        for (std::size_t i = next++; i < catalogue.entries.size(); i = next++) {
            if (session.hasEnded()) return;
            CardEntry& entry = catalogue.entries[i];
            if (entry.type == CardFileType::Photo) entry.taken = dateOf(entry);
        }
    });
}

}  // namespace

CardCatalogue readCard(const CardSession& session, const FileDescriptor& root,
                       CaptureDates* captureDates) {
    CardCatalogue catalogue = arrangeCatalogue(Lister(session, root).list());
    if (captureDates != nullptr) readDates(session, root, *captureDates, catalogue);
    dateSidecars(catalogue);
    return catalogue;
}

}  // namespace bildkurier
