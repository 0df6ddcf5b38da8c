// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "KeyBridge.h"

#include "WindowText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>

namespace bildkurier {

KeyBridge::KeyBridge(std::shared_ptr<SSHKeyModel> model) : model_(std::move(model)) {
    notice_.setSingleShot(true);
    connect(&notice_, &QTimer::timeout, this, &KeyBridge::changed);
    observation_ = model_->observe([this] { notice_.start(0); });
}

QString KeyBridge::publicKey() const { return windowText(model_->publicKey()); }

QString KeyBridge::fingerprint() const { return windowText(model_->fingerprint()); }

QString KeyBridge::explanation() const {
    if (model_->keyRequired()) {
        return tr(
            "Anmeldung nur mit ssh-Schlüssel, ohne Passwortabfrage. Die App braucht dafür "
            "einen eigenen Schlüssel: neu erzeugen oder einen vorhandenen (z. B. "
            "~/.ssh/id_ed25519) übernehmen.");
    }
    return tr(
        "Anmeldung nur mit ssh-Schlüssel, ohne Passwortabfrage. Ohne eigenen Schlüssel der "
        "App gilt die ssh-Einrichtung in ~/.ssh (einrichten im Terminal: ssh-copy-id "
        "benutzer@rechner).");
}

QString KeyBridge::message() const { return windowText(model_->message()); }

void KeyBridge::generate() { model_->generate(); }

void KeyBridge::importKey() { model_->importKey(); }

void KeyBridge::removeKey() { model_->removeKey(); }

void KeyBridge::copyPublicKey() const {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(publicKey());
}

}  // namespace bildkurier
