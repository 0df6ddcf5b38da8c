// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MacFile.h"

#include "FoundationValues.h"

#include <utility>

namespace bildkurier {

MacFile::MacFile(ICCameraFile* file, std::shared_ptr<CompletionGate> gate)
    : file_(file), gate_(std::move(gate)) {}

FileFacts MacFile::facts() const {
    return {.name = textOf(file_.name),
            .size = file_.fileSize,
            .created = dateOf(file_.creationDate),
            .fileCreated = dateOf(file_.fileCreationDate)};
}

std::vector<std::shared_ptr<NativeFile>> MacFile::sidecars() const {
    std::vector<std::shared_ptr<NativeFile>> files;
    for (const NativeItem& item : nativeItems(file_.sidecarFiles, gate_)) {
        if (item.file) files.push_back(item.file);
    }
    return files;
}

void MacFile::download(const DownloadRequest& request, NativeDownloadDone done) {
    // Nil in a dictionary throws, and without a name the file would come under its own.
    NSString* const name = stringOf(request.saveAs);
    if (name == nil) return done(failure("Der Dateiname ist kein gültiger Text."));
    NSDictionary<ICDownloadOption, id>* const options = @{
        ICDownloadsDirectoryURL : locationOf(request.directory, true),
        ICSaveAsFilename : static_cast<NSString* _Nonnull>(name),
        ICOverwrite : @(request.overwrite),
    };
    const auto gate = gate_;
    [file_ requestDownloadWithOptions:options
                           completion:^(NSString* filename, NSError* error) {
                             gate->pass([&] {
                                 if (error != nil) {
                                     done(std::unexpected(errorOf(error)));
                                 } else {
                                     done(textOf(filename));
                                 }
                             });
                           }];
}

std::vector<NativeItem> nativeItems(NSArray<ICCameraItem*>* items,
                                    const std::shared_ptr<CompletionGate>& gate) {
    std::vector<NativeItem> all;
    all.reserve(items.count);
    for (ICCameraItem* item in items) {
        const bool isFile = [item isKindOfClass:[ICCameraFile class]];
        all.push_back(
            {isFile ? std::make_shared<MacFile>(static_cast<ICCameraFile*>(item), gate) : nullptr});
    }
    return all;
}

}  // namespace bildkurier
