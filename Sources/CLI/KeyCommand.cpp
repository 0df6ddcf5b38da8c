// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "KeyCommand.h"

#include <utility>

namespace bildkurier {

namespace {

constexpr auto noKey = "Die App hat noch keinen eigenen Schlüssel.";
constexpr auto noPublicHalf =
    "Der öffentliche Teil des Schlüssels fehlt oder ist nicht lesbar. Den Schlüssel neu erzeugen "
    "oder noch einmal übernehmen.";

}  // namespace

KeyCommand::KeyCommand(CommandLine commandLine, std::shared_ptr<SSHKeyModel> keys, Report& report,
                       Done done)
    : commandLine_(std::move(commandLine)),
      keys_(std::move(keys)),
      report_(report),
      done_(std::move(done)) {}

void KeyCommand::begin() {
    using Command = CommandLine::Command;
    const bool hasKey = keys_->hasKey();
    if (commandLine_.command == Command::keyShow) return show();
    if (commandLine_.command == Command::keyRemove) {
        keys_->removeKey();
        return hasKey ? acted() : tell(noKey);
    }
    if (hasKey && !commandLine_.replace) {
        return refuse(
            "Es gibt schon einen Schlüssel. Mit --replace wird er ersetzt und muss danach auch "
            "auf dem Server ersetzt werden.");
    }
    if (commandLine_.command == Command::keyGenerate) {
        keys_->generate();
    } else {
        keys_->importKey();
    }
    // Told from here on, so that the end of the action is seen and not its beginning.
    observation_ = keys_->observe([this] {
        if (!keys_->busy() && keys_->message()) acted();
    });
}

void KeyCommand::show() {
    const auto& key = keys_->publicKey();
    if (!key) return refuse(keys_->hasKey() ? noPublicHalf : noKey);
    report_.status(*key);
    if (const auto& fingerprint = keys_->fingerprint()) report_.status(*fingerprint);
    done_(ExitStatus::success);
}

void KeyCommand::acted() {
    observation_.reset();
    const std::string message = keys_->message().value_or("");
    if (keys_->failed()) return refuse(message);
    tell(message);
}

void KeyCommand::tell(const std::string& outcome) {
    report_.status(outcome);
    done_(ExitStatus::success);
}

void KeyCommand::refuse(const std::string& message) {
    report_.error(message);
    done_(ExitStatus::destinationUnusable);
}

}  // namespace bildkurier
