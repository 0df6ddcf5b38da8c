// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#import <ImageCaptureCore/ImageCaptureCore.h>

#include <memory>
#include <vector>

namespace bildkurier {

/// A file in a device's catalogue.
class MacFile final : public NativeFile {
public:
    explicit MacFile(ICCameraFile* _Nonnull file);

    FileFacts facts() const override;
    std::vector<std::shared_ptr<NativeFile>> sidecars() const override;
    void download(const DownloadRequest& request, NativeDownloadDone done) override;

private:
    ICCameraFile* _Nonnull file_;
};

/// One item for each of `items`, in their order; those that are no files have none.
std::vector<NativeItem> nativeItems(NSArray<ICCameraItem*>* _Nullable items);

}  // namespace bildkurier
