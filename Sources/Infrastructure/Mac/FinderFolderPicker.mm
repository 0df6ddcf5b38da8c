// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FinderFolderPicker.h"

#include "FoundationValues.h"

#import <AppKit/AppKit.h>

namespace bildkurier {

namespace {

std::optional<Url> chosen(NSOpenPanel* _Nonnull panel, const Url& start) {
    panel.directoryURL = locationOf(start.path, true);
    if ([panel runModal] != NSModalResponseOK) return std::nullopt;
    NSURL* const location = panel.URL;
    if (location == nil) return std::nullopt;
    return urlOf(static_cast<NSURL* _Nonnull>(location));
}

}  // namespace

std::optional<Url> FinderFolderPicker::chooseFolder(const Url& start) {
    NSOpenPanel* const panel = [NSOpenPanel openPanel];
    panel.canChooseDirectories = YES;
    panel.canChooseFiles = NO;
    panel.canCreateDirectories = YES;
    panel.prompt = @"Auswählen";
    return chosen(panel, start);
}

std::optional<Url> FinderFolderPicker::chooseFile(const Url& start, const std::string& prompt) {
    NSOpenPanel* const panel = [NSOpenPanel openPanel];
    panel.canChooseDirectories = NO;
    panel.canChooseFiles = YES;
    panel.showsHiddenFiles = YES;
    panel.prompt = stringOf(prompt);
    return chosen(panel, start);
}

}  // namespace bildkurier
