// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeCameraFile.h"

#include <utility>

namespace bildkurier {

FakeCameraFile::FakeCameraFile(std::shared_ptr<MemoryFileStore> store,
                               std::optional<std::string> fileName, std::string fileContents)
    : cameraName(std::move(fileName)),
      contents(std::move(fileContents)),
      cameraSize(std::ssize(contents)),
      store_(std::move(store)) {}

void FakeCameraFile::grow(std::size_t bytes) {
    store_->files[staged.path] = contents.substr(0, bytes);
}

void FakeCameraFile::deliver() {
    if (error) return done_(std::unexpected(*error));
    const std::string folder = staged.path.substr(0, staged.path.rfind('/'));
    store_->files[savedAs ? folder + "/" + *savedAs : staged.path] = contents;
    done_(savedAs);
}

void FakeCameraFile::download(const Url& to, const std::string& saveAs, DownloadCompletion done) {
    ++downloads;
    staged = to.appending(saveAs);
    done_ = std::move(done);
    if (!holdsBack) deliver();
}

}  // namespace bildkurier
