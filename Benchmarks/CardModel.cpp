// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardModel.h"

#include "Fixture.h"
#include "IniUserDefaults.h"
#include "UserDefaultsSettings.h"

#include <memory>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

/// Not the user's own choices.
std::shared_ptr<UserDefaults> defaultsWith(const fs::path& destination) {
    const fs::path file = benchFolder() / "settings.ini";
    fs::remove(file);
    auto defaults = std::make_shared<IniUserDefaults>(file);
    UserDefaultsSettings(defaults).setDestination(Url::file(destination));
    return defaults;
}

}  // namespace

CardModel::CardModel(const fs::path& card, const fs::path& destination)
    : parts_(AppContainer::make(
          queue_, *pool_,
          {.cards = {card}, .defaults = defaultsWith(destination), .folderPicker = nullptr})) {}

CardModel::~CardModel() {
    parts_ = {};
    pool_.reset();
}

void CardModel::runUntil(const std::function<bool()>& reached) {
    const Handle observation = model().observe([&] {
        if (reached()) queue_.stop();
    });
    while (!reached()) queue_.run();
}

void CardModel::runUntilReady() {
    runUntil([this] { return model().phase() == ImportModel::Phase::ready; });
}

}  // namespace bildkurier
