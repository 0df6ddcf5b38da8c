// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SSHKeyModel.h"

#include "RunThen.h"

#include <utility>

namespace bildkurier {

template <class T>
void SSHKeyModel::publish(T& field, std::type_identity_t<T> value) {
    if (field == value) return;
    field = std::move(value);
    observers_.notify();
}

SSHKeyModel::SSHKeyModel(Collaborators collaborators, bool keyRequired, MainQueue& main,
                         Background& background)
    : main_(main),
      background_(background),
      keyring_(std::move(collaborators.keyring)),
      picker_(std::move(collaborators.picker)),
      fileAccess_(std::move(collaborators.fileAccess)),
      homeFolder_(std::move(collaborators.homeFolder)),
      keyRequired_(keyRequired) {
    reload();
}

Handle SSHKeyModel::observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
}

void SSHKeyModel::generate() {
    run("Neuer Schlüssel erzeugt. Den öffentlichen Schlüssel jetzt beim Server eintragen.",
        [](SSHKeyring& keyring) { return keyring.generate(); });
}

void SSHKeyModel::importKey() {
    if (!picker_) return;
    const auto chosen = picker_->chooseFile(Url::file(homeFolder_).appending(".ssh"), "Übernehmen");
    if (!chosen) return;
    run("Schlüssel übernommen.", [access = fileAccess_, file = *chosen](SSHKeyring& keyring) {
        const Handle held = access->start(file);
        return keyring.importKey(file);
    });
}

void SSHKeyModel::removeKey() {
    keyring_->removeKey();
    const bool isGone = !keyring_->hasPrivateKey();
    publish(failed_, !isGone);
    publish(message_,
            isGone ? "Schlüssel der App gelöscht." : "Der Schlüssel lässt sich nicht löschen.");
    reload();
}

void SSHKeyModel::run(std::string success, Work work) {
    publish(busy_, true);
    publish(message_, std::nullopt);
    publish(failed_, false);
    runThen(
        background_, main_,
        [keyring = keyring_, work = std::move(work), success = std::move(success)] {
            const auto done = work(*keyring);
            return std::pair(done ? success : done.error().message, !done.has_value());
        },
        guard_([this](std::pair<std::string, bool> outcome) {
            publish(busy_, false);
            publish(failed_, outcome.second);
            publish(message_, std::move(outcome.first));
            reload();
        }));
}

void SSHKeyModel::reload() {
    publish(hasKey_, keyring_->hasPrivateKey());
    publish(publicKey_, keyring_->publicKey());
    publish(fingerprint_, keyring_->keyFingerprint());
}

}  // namespace bildkurier
