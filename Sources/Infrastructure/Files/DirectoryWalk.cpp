// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DirectoryWalk.h"

#include "FileDescriptor.h"
#include "OpenBelow.h"
#include "SystemCall.h"
#include "Workers.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <climits>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

/// The folders still to be read, shared by the workers.
class FolderQueue {
public:
    /// Reports a folder that was taken as done when it goes.
    class Done {
    public:
        explicit Done(FolderQueue& queue) : queue_(queue) {}
        Done(const Done&) = delete;
        Done& operator=(const Done&) = delete;
        ~Done() { queue_.done(); }

    private:
        FolderQueue& queue_;
    };

    explicit FolderQueue(std::string first) { folders_.push_back(std::move(first)); }

    void add(std::vector<std::string> folders) {
        const std::lock_guard lock(mutex_);
        for (auto& folder : folders) folders_.push_back(std::move(folder));
        changed_.notify_all();
    }

    /// Waits for a folder; absent once all are done. Every folder taken must be reported as
    /// `Done`, after those in it have been added.
    std::optional<std::string> take() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !folders_.empty() || inWork_ == 0; });
        if (folders_.empty()) return {};
        // The newest first: few are waiting at any time, as in a walk that goes deep first.
        std::string folder = std::move(folders_.back());
        folders_.pop_back();
        ++inWork_;
        return folder;
    }

    void clear() {
        const std::lock_guard lock(mutex_);
        folders_.clear();
    }

private:
    void done() {
        const std::lock_guard lock(mutex_);
        if (--inWork_ == 0) changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> folders_;
    std::size_t inWork_ = 0;
};

/// Reads one folder: its files go to the visitor, the folders in it are collected.
class FolderReader {
public:
    FolderReader(const WalkVisitor& visitor, std::size_t worker, const std::string& path)
        : visitor_(visitor), worker_(worker), path_(path) {}

    std::vector<std::string> folders;
    int error = 0;  ///< what first kept it from reading everything, as errno

    void read(const FileDescriptor& root) {
        // No program could open what lies deeper by its path.
        if (path_.size() >= PATH_MAX) return note(ENAMETOOLONG);
        const FileDescriptor folder = openBelow(root, path_, O_RDONLY | O_DIRECTORY);
        if (!folder) return note(errno);
        alignas(dirent64) std::array<char, 65536> buffer;
        while (true) {
            const auto fill = [&] {
                return ::getdents64(folder.get(), buffer.data(), buffer.size());
            };
            const auto length = retried(fill);
            if (length < 0) return note(errno);
            if (length == 0) return;
            for (auto at = buffer.data(); at < buffer.data() + length;) {
                const auto& entry = *reinterpret_cast<const dirent64*>(at);
                if (entry.d_name[0] == '.') {
                    tellOfHidden(entry.d_name);
                } else {
                    visit(folder, entry);
                }
                at += entry.d_reclen;
            }
        }
    }

private:
    void note(int code) {
        if (error == 0) error = code;
    }

    void tellOfHidden(std::string_view name) const {
        if (visitor_.hidden && name != "." && name != "..") visitor_.hidden(worker_, path_, name);
    }

    void visit(const FileDescriptor& folder, const dirent64& entry) {
        if (entry.d_type == DT_DIR) return addFolder(entry.d_name);
        if (entry.d_type != DT_REG && entry.d_type != DT_UNKNOWN) return;
        struct statx found;
        const auto look = [&] {
            return ::statx(folder.get(), entry.d_name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
                           STATX_TYPE | STATX_SIZE | STATX_MTIME, &found);
        };
        if (retried(look) != 0) {
            note(errno);
        } else if (S_ISDIR(found.stx_mode)) {
            addFolder(entry.d_name);
        } else if (S_ISREG(found.stx_mode)) {
            visitor_.file(worker_, {.folder = path_,
                                    .name = entry.d_name,
                                    .size = static_cast<std::int64_t>(found.stx_size),
                                    .modified = {.tv_sec = found.stx_mtime.tv_sec,
                                                 .tv_nsec = found.stx_mtime.tv_nsec}});
        }
    }

    void addFolder(const char* name) {
        folders.push_back(path_.empty() ? name : path_ + "/" + name);
    }

    const WalkVisitor& visitor_;
    std::size_t worker_;
    const std::string& path_;
};

class Walk {
public:
    Walk(FileDescriptor root, const WalkOptions& options, const WalkVisitor& visitor)
        : root_(std::move(root)), options_(options), visitor_(visitor) {}

    void run() {
        runWorkers(options_.workers, [this](std::size_t worker) { work(worker); });
    }

private:
    void work(std::size_t worker) {
        while (const auto folder = queue_.take()) {
            // Nobody waits for ever for a folder whose visitor throws.
            const FolderQueue::Done done(queue_);
            if (options_.cancelled && options_.cancelled()) {
                queue_.clear();
            } else {
                FolderReader reader(visitor_, worker, *folder);
                reader.read(root_);
                queue_.add(std::move(reader.folders));
                if (reader.error != 0 && visitor_.unreadable)
                    visitor_.unreadable(worker, *folder, reader.error);
            }
        }
    }

    const FileDescriptor root_;
    const WalkOptions& options_;
    const WalkVisitor& visitor_;
    FolderQueue queue_{""};
};

}  // namespace

void walkFiles(const std::string& root, const WalkOptions& options, const WalkVisitor& visitor) {
    FileDescriptor folder(
        retried([&root] { return ::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    if (folder) return Walk(std::move(folder), options, visitor).run();
    if (visitor.unreadable) visitor.unreadable(0, {}, errno);
}

}  // namespace bildkurier
