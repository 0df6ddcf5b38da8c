// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <utility>

namespace bildkurier {

/// A file that says what the test says, and remembers what was asked of it.
class FakeNativeFile final : public NativeFile {
public:
    explicit FakeNativeFile(FileFacts facts = {}) : known(std::move(facts)) {}

    FileFacts known;
    std::vector<std::shared_ptr<NativeFile>> companions;
    std::vector<DownloadRequest> requests;
    std::vector<NativeDownloadDone> downloads;  ///< to be completed by the test

    FileFacts facts() const override { return known; }
    std::vector<std::shared_ptr<NativeFile>> sidecars() const override { return companions; }
    void download(const DownloadRequest& request, NativeDownloadDone done) override {
        requests.push_back(request);
        downloads.push_back(std::move(done));
    }
};

}  // namespace bildkurier
