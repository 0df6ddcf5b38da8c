// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CompletionGate.h"
#include "NativeCamera.h"

#import <ImageCaptureCore/ImageCaptureCore.h>

#include <memory>
#include <vector>

namespace bildkurier {

/// A file in a device's catalogue.
class MacFile final : public NativeFile {
public:
    MacFile(ICCameraFile* _Nonnull file, std::shared_ptr<CompletionGate> gate);

    FileFacts facts() const override;
    std::vector<std::shared_ptr<NativeFile>> sidecars() const override;
    void download(const DownloadRequest& request, NativeDownloadDone done) override;

private:
    ICCameraFile* _Nonnull file_;
    std::shared_ptr<CompletionGate> gate_;
};

/// One item for each of `items`, in their order; those that are no files have none.
std::vector<NativeItem> nativeItems(NSArray<ICCameraItem*>* _Nullable items,
                                    const std::shared_ptr<CompletionGate>& gate);

}  // namespace bildkurier
