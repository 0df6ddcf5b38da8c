// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "FileAccess.h"
#include "FolderPicker.h"
#include "Guard.h"
#include "MainQueue.h"
#include "Observers.h"
#include "SSHKeyring.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

namespace bildkurier {

/// The application's own key as a front end shows it, and what the user can do with it. Fields
/// change on the main thread only; observers hear of each change.
class SSHKeyModel final {
public:
    struct Collaborators {
        std::shared_ptr<SSHKeyring> keyring;
        std::shared_ptr<FolderPicker> picker;  ///< none: nothing can be chosen
        std::shared_ptr<FileAccess> fileAccess;
        std::string
            homeFolder;  ///< path; the user's real one, whatever this process is confined to
    };

    /// Reads the key, which blocks shortly. With `keyRequired` servers accept no other key than
    /// the application's. `main` must outlive the model, and `background` end before `main`.
    SSHKeyModel(Collaborators collaborators, bool keyRequired, MainQueue& main,
                Background& background);

    /// Calls `changed` whenever a field below has changed, until the handle is dropped.
    [[nodiscard]] Handle observe(std::function<void()> changed);

    /// Whether there is a key that a new one would replace, be its public half missing or
    /// unreadable.
    bool hasKey() const { return hasKey_; }
    const std::optional<std::string>& publicKey() const { return publicKey_; }
    const std::optional<std::string>& fingerprint() const { return fingerprint_; }
    /// What came of the last action; absent while one runs.
    const std::optional<std::string>& message() const { return message_; }
    /// Whether that was an error; false without a message.
    bool failed() const { return failed_; }
    /// No action may be begun meanwhile.
    bool busy() const { return busy_; }
    bool keyRequired() const { return keyRequired_; }

    /// Makes a new key. The old one is lost, and servers must be told the new one.
    void generate();
    /// Lets the user choose a private key to take over.
    void importKey();
    void removeKey();

private:
    using Work = std::function<Result<>(SSHKeyring&)>;

    template <class T>
    void publish(T& field, std::type_identity_t<T> value);
    void run(std::string success, Work work);
    void reload();

    MainQueue& main_;
    Background& background_;
    std::shared_ptr<SSHKeyring> keyring_;
    std::shared_ptr<FolderPicker> picker_;
    std::shared_ptr<FileAccess> fileAccess_;
    std::string homeFolder_;
    bool keyRequired_;

    bool hasKey_ = false;
    std::optional<std::string> publicKey_;
    std::optional<std::string> fingerprint_;
    std::optional<std::string> message_;
    bool failed_ = false;
    bool busy_ = false;
    Observers observers_;
    Guard guard_;
};

}  // namespace bildkurier
