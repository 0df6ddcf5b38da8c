// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraChoice.h"

#include "CameraName.h"
#include "CardFolder.h"
#include "FileName.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace bildkurier {

namespace {

std::string notFound(const std::string& camera,
                     const std::vector<std::shared_ptr<Camera>>& cameras) {
    const auto unknown = unknownIdentity(cameras);
    return fmt::format("Kamera „{}“ nicht gefunden.{}{}", displayText(camera), unknown ? " " : "",
                       unknown.value_or(""));
}

}  // namespace

std::optional<std::string> unknownIdentity(const std::vector<std::shared_ptr<Camera>>& cameras) {
    const auto found = std::ranges::find_if_not(
        cameras, [](const auto& camera) { return camera->isIdentityFinal(); });
    if (found == cameras.end()) return std::nullopt;
    return fmt::format(
        "Die Kennung der Kamera {} ist noch nicht bekannt: Ein anderes Programm benutzt sie, sie "
        "antwortet nicht, oder der angegebene Ordner ist leer.",
        displayName(**found));
}

Result<> checkAttached(const CommandLine& commandLine,
                       const std::vector<std::shared_ptr<Camera>>& cameras) {
    if (!cameras.empty() && cameras.size() >= commandLine.cards.size()) return {};
    for (const auto& card : commandLine.cards) {
        if (auto readable = checkCardFolder(card); !readable) return readable;
    }
    if (cameras.empty()) return failure("Keine Kamera gefunden.");
    return failure(fmt::format("Nur {} von {} angegebenen Karten gefunden.", cameras.size(),
                               commandLine.cards.size()));
}

Result<std::deque<std::shared_ptr<Camera>>> chooseCameras(
    const CommandLine& commandLine, const std::vector<std::shared_ptr<Camera>>& cameras) {
    if (auto attached = checkAttached(commandLine, cameras); !attached)
        return std::unexpected(attached.error());
    std::deque<std::shared_ptr<Camera>> chosen;
    std::ranges::copy_if(cameras, std::back_inserter(chosen), [&](const auto& camera) {
        return !commandLine.camera || answersTo(*camera, *commandLine.camera);
    });
    if (chosen.empty()) return failure(notFound(commandLine.camera.value_or(""), cameras));
    if (chosen.size() > 1 && commandLine.cards.empty())
        return failure("Mehrere Kameras gefunden; bitte mit --camera eine wählen.");
    return chosen;
}

}  // namespace bildkurier
