// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ScriptedFile.h"

#include <utility>

namespace bildkurier {

ScriptedFile::ScriptedFile(std::shared_ptr<MemoryFileStore> store, Picture what)
    : picture(std::move(what)), store_(std::move(store)) {}

void ScriptedFile::grow() { write(saveAs_, picture.contents.size() / 2); }

void ScriptedFile::deliver(const std::optional<std::string>& savedAs) {
    write(savedAs.value_or(saveAs_), picture.contents.size());
    answer(savedAs);
}

void ScriptedFile::truncate() {
    write(saveAs_, picture.contents.size() - 1);
    answer(std::nullopt);
}

void ScriptedFile::fail() { answer(failure("Lesefehler")); }

void ScriptedFile::download(const Url& folder, const std::string& saveAs, DownloadCompletion done) {
    ++downloads;
    folder_ = folder;
    saveAs_ = saveAs;
    done_ = std::move(done);
}

void ScriptedFile::write(const std::string& as, std::size_t bytes) {
    if (unplugged) return;
    store_->files[folder_.appending(as).path] = picture.contents.substr(0, bytes);
}

void ScriptedFile::answer(Result<std::optional<std::string>> result) {
    std::exchange(done_, nullptr)(std::move(result));
}

}  // namespace bildkurier
