// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraLister.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <ranges>
#include <string_view>
#include <utility>

namespace bildkurier {

namespace {

/// More than any camera has, for one that answers with folders for ever.
constexpr int deepest = 16;

/// So often it is opened anew to be asked the same once more.
constexpr int mostReopenings = 2;

/// A camera that falls silent in so many folders in a row does not come round any more.
constexpr int mostSilentInARow = 3;

std::string below(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + "/" + name;
}

/// What people do not see on a card either: a Mac's twins of every file, what lies in a bin.
bool isHidden(std::string_view path) { return path.starts_with('.') || path.contains("/."); }

/// Names are taken for paths by the library.
bool isOneName(std::string_view name) { return !name.empty() && !name.contains('/'); }

std::int64_t signedSize(std::uint64_t size) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    return std::in_range<std::int64_t>(size) ? static_cast<std::int64_t>(size) : most;
}

/// A file or a folder, which may be of any day up to now.
CardEntry unreadableEntry(const std::string& name, CardFileType type = CardFileType::Other) {
    return {.name = name,
            .modified = std::chrono::floor<Date::duration>(std::chrono::system_clock::now()),
            .type = type,
            .error = EIO};
}

}  // namespace

CameraLister::CameraLister(CameraConnection& connection, std::function<bool()> isStopped,
                           std::function<void(std::size_t)> progress)
    : connection_(connection), isStopped_(std::move(isStopped)), progress_(std::move(progress)) {
    connection_.camera().onObjectListed = [this] { tell(listed_ + ++seen_); };
}

CameraLister::~CameraLister() {
    connection_.camera().onObjectListed = [] {};
}

/// What is listed once more does not count back.
void CameraLister::tell(std::size_t files) {
    told_ = std::max(told_, files);
    progress_(told_);
}

std::optional<CardListing> CameraLister::list() {
    if (listFolder("", 0) == Answer::Over) return std::nullopt;
    return std::move(listing_);
}

CameraLister::Answer CameraLister::ask(const std::function<int()>& call) {
    while (!isStopped_()) {
        if (reopenings_ > mostReopenings || silentInARow_ >= mostSilentInARow)
            return Answer::Failed;
        const int code = call();
        const CameraFault fault = connection_.fault(code);
        isSilent_ = fault == CameraFault::Busy ||
                    (fault == CameraFault::Transfer && code != GphotoCamera::incomplete);
        if (fault != CameraFault::Busy) busy_ = 0;
        switch (fault) {
            case CameraFault::None:
                return Answer::Good;
            case CameraFault::Gone:
            case CameraFault::Cancelled:
                return Answer::Over;
            case CameraFault::Transfer:
                ++reopenings_;
                break;
            case CameraFault::Busy:
                if (!connection_.waitWhileBusy(busy_++)) return Answer::Failed;
                break;
            default:
                return Answer::Failed;
        }
    }
    return Answer::Over;
}

CameraLister::Answer CameraLister::listFolder(const std::string& folder, int depth) {
    std::vector<std::string> names;
    const Answer answer = listInside(folder, names);
    if (answer == Answer::Over) return answer;
    if (answer == Answer::Failed) addUnreadable(folder);
    silentInARow_ = answer == Answer::Failed && isSilent_ ? silentInARow_ + 1 : 0;
    // The library looks each file up from the first on that it knows of: those of the last folder
    // are found soonest as long as it knows of no others.
    for (const std::string& name : names | std::views::reverse) {
        if (isHidden(name)) {
            addOther(folder, name);
            continue;
        }
        if (!isOneName(name)) {
            addUnreadable(folder);
            continue;
        }
        const std::string inner = below(folder, name);
        if (depth == deepest) {
            addUnreadable(inner);
        } else if (listFolder(inner, depth + 1) == Answer::Over) {
            return Answer::Over;
        }
    }
    return Answer::Good;
}

/// What can be listed of a folder is, even if its files or its folders cannot.
CameraLister::Answer CameraLister::listInside(const std::string& folder,
                                              std::vector<std::string>& folders) {
    const Answer files = listFiles(folder);
    if (files == Answer::Over) return files;
    // Where its files could not be listed, there is only one try left.
    reopenings_ = files == Answer::Good ? 0 : mostReopenings;
    const Answer inside = ask([&] {
        auto [code, found] = connection_.cameraInStep().folders("/" + folder);
        folders = std::move(found);
        return code;
    });
    return inside == Answer::Good ? files : inside;
}

CameraLister::Answer CameraLister::listFiles(const std::string& folder) {
    std::vector<std::string> names;
    reopenings_ = 0;
    const Answer answer = ask([&] {
        seen_ = 0;
        auto [code, found] = connection_.cameraInStep().files("/" + folder);
        names = std::move(found);
        return code;
    });
    if (answer == Answer::Over || isStopped_()) return Answer::Over;
    reopenings_ = 0;
    seen_ = 0;
    listed_ += names.size();
    tell(listed_);
    for (const std::string& name : names) {
        if (isHidden(name) || cardFileType(name) == CardFileType::Other) {
            addOther(folder, name);
            continue;
        }
        if (!isOneName(name)) {
            addUnreadable(folder);
            continue;
        }
        auto found = entry(folder, name);
        if (!found) return Answer::Over;
        listing_[folder].push_back(*std::move(found));
    }
    return answer;
}

std::optional<CardEntry> CameraLister::entry(const std::string& folder, const std::string& name) {
    CardEntry entry{.name = name, .type = cardFileType(name)};
    if (entry.type == CardFileType::Other || !isOneName(name) || isHidden(below(folder, name)))
        return std::nullopt;
    const Answer described = ask([&] {
        const auto [code, info] = connection_.cameraInStep().info("/" + folder, name);
        entry.size = signedSize(info.size);
        entry.modified = info.modified;
        return code;
    });
    if (described == Answer::Over) return std::nullopt;
    return described == Answer::Good ? entry : unreadableEntry(name, entry.type);
}

void CameraLister::addOther(const std::string& folder, const std::string& name) {
    listing_[folder].push_back({.name = name});
}

void CameraLister::addUnreadable(const std::string& unreadable) {
    const std::string folder = unreadable.empty() ? wholeCard : unreadable;
    const std::size_t slash = folder.rfind('/');
    const bool isTop = slash == std::string::npos;
    auto& beside = listing_[isTop ? "" : folder.substr(0, slash)];
    CardEntry entry = unreadableEntry(isTop ? folder : folder.substr(slash + 1));
    const bool isKnown = std::ranges::any_of(beside, [&entry](const CardEntry& known) {
        return known.error != 0 && known.name == entry.name;
    });
    if (!isKnown) beside.push_back(std::move(entry));
}

}  // namespace bildkurier
