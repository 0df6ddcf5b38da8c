// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#define FUSE_USE_VERSION 31

#include "CardLikeVolume.h"

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <strings.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <utility>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// What a volume's calls are about.
struct Contents {
    std::string folder;
    ReadingGate gate;
};

Contents& contents() { return *static_cast<Contents*>(fuse_get_context()->private_data); }

/// `name` as it is written in `folder`, if it is there in whatever case.
std::string asWritten(const fs::path& folder, const std::string& name) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        const std::string found = entry.path().filename().string();
        if (strcasecmp(found.c_str(), name.c_str()) == 0) return found;
    }
    return name;
}

/// Where in the backing folder the file `path` of the volume is.
std::string backing(const char* path) {
    fs::path found = contents().folder;
    for (const auto& name : fs::path(path).relative_path()) {
        found /= asWritten(found, name.string());
    }
    return found.string();
}

/// What a call that answers -1 on failure did, as this interface wants it.
int outcome(auto answer) { return answer < 0 ? -errno : static_cast<int>(answer); }

int descriptor(const fuse_file_info* file) { return static_cast<int>(file->fh); }

int opened(int answer, fuse_file_info* file) {
    if (answer < 0) return -errno;
    file->fh = static_cast<std::uint64_t>(answer);
    return 0;
}

void* start(fuse_conn_info* /*connection*/, fuse_config* configuration) {
    // What was true of a name may not be true of it in another case.
    configuration->entry_timeout = 0;
    configuration->attr_timeout = 0;
    configuration->negative_timeout = 0;
    return fuse_get_context()->private_data;
}

int getFacts(const char* path, struct stat* facts, fuse_file_info* /*file*/) {
    return outcome(lstat(backing(path).c_str(), facts));
}

int readFolder(const char* path, void* buffer, fuse_fill_dir_t fill, off_t /*offset*/,
               fuse_file_info* /*file*/, fuse_readdir_flags /*flags*/) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(backing(path), error)) {
        fill(buffer, entry.path().filename().c_str(), nullptr, 0, fuse_fill_dir_flags{});
    }
    return -error.value();
}

int openFile(const char* path, fuse_file_info* file) {
    return opened(open(backing(path).c_str(), file->flags), file);
}

int createFile(const char* path, mode_t mode, fuse_file_info* file) {
    return opened(open(backing(path).c_str(), file->flags, mode), file);
}

int readFile(const char* /*path*/, char* bytes, std::size_t count, off_t offset,
             fuse_file_info* file) {
    contents().gate.pass(static_cast<std::uintmax_t>(offset) + count);
    return outcome(pread(descriptor(file), bytes, count, offset));
}

int writeFile(const char* /*path*/, const char* bytes, std::size_t count, off_t offset,
              fuse_file_info* file) {
    return outcome(pwrite(descriptor(file), bytes, count, offset));
}

int flushFile(const char* /*path*/, int /*onlyData*/, fuse_file_info* file) {
    return outcome(fsync(descriptor(file)));
}

int closeFile(const char* /*path*/, fuse_file_info* file) {
    return outcome(close(descriptor(file)));
}

int makeFolder(const char* path, mode_t mode) {
    return outcome(mkdir(backing(path).c_str(), mode));
}

int removeFile(const char* path) { return outcome(unlink(backing(path).c_str())); }

int removeFolder(const char* path) { return outcome(rmdir(backing(path).c_str())); }

int renameFile(const char* from, const char* to, unsigned flags) {
    return outcome(
        renameat2(AT_FDCWD, backing(from).c_str(), AT_FDCWD, backing(to).c_str(), flags));
}

int setTimes(const char* path, const timespec* times, fuse_file_info* /*file*/) {
    return outcome(utimensat(AT_FDCWD, backing(path).c_str(), times, AT_SYMLINK_NOFOLLOW));
}

int getSpace(const char* path, struct statvfs* facts) {
    return outcome(statvfs(backing(path).c_str(), facts));
}

fuse_operations operations() {
    fuse_operations all{};
    all.init = start;
    all.getattr = getFacts;
    all.readdir = readFolder;
    all.open = openFile;
    all.create = createFile;
    all.read = readFile;
    all.write = writeFile;
    all.fsync = flushFile;
    all.release = closeFile;
    all.mkdir = makeFolder;
    all.unlink = removeFile;
    all.rmdir = removeFolder;
    all.rename = renameFile;
    all.utimens = setTimes;
    all.statfs = getSpace;
    return all;
}

}  // namespace

struct CardLikeVolume::Session {
    Session(std::string backing, const std::string& source)
        : contents{.folder = std::move(backing), .gate = {}} {
        fuse_args arguments = FUSE_ARGS_INIT(0, nullptr);
        fuse_opt_add_arg(&arguments, "");
        fuse_opt_add_arg(&arguments, ("-ofsname=" + source).c_str());
        const fuse_operations all = operations();
        fuse = fuse_new(&arguments, &all, sizeof all, &contents);
        fuse_opt_free_args(&arguments);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() {
        contents.gate.open();
        if (server.joinable()) {
            umount2(mountedOn.c_str(), MNT_DETACH);
            server.join();
            fuse_unmount(fuse);
        }
        if (fuse) fuse_destroy(fuse);
    }

    bool mountOn(const std::string& folder) {
        if (!fuse || fuse_mount(fuse, folder.c_str()) != 0) return false;
        mountedOn = folder;
        // A read that waits keeps nothing else waiting.
        constexpr int sharesConnection = 0;
        server = std::thread([this] { fuse_loop_mt(fuse, sharesConnection); });
        return true;
    }

    Contents contents;
    std::string mountedOn;
    struct fuse* fuse = nullptr;
    std::thread server;
};

CardLikeVolume::CardLikeVolume(const std::string& folder, const std::string& backing,
                               const std::string& source) {
    if (!fs::exists("/dev/fuse")) return;
    auto session = std::make_unique<Session>(backing, source);
    if (session->mountOn(folder)) session_ = std::move(session);
}

CardLikeVolume::~CardLikeVolume() = default;

ReadingGate& CardLikeVolume::gate() { return session_->contents.gate; }

}  // namespace bildkurier
