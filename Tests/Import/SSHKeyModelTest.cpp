// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFileAccess.h"
#include "FakeFolderPicker.h"
#include "FakeSSHKeyring.h"
#include "ManualRunLoop.h"
#include "SSHKeyModel.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

using Text = std::optional<std::string>;

constexpr auto generated =
    "Neuer Schlüssel erzeugt. Den öffentlichen Schlüssel jetzt beim Server eintragen.";
constexpr auto hasPassphrase =
    "Der Schlüssel ist mit einer Passphrase geschützt. Die App fragt nie nach einem Passwort; "
    "bitte einen Schlüssel ohne Passphrase nehmen oder hier einen neuen erzeugen.";

/// A model amid fakes. Change them before `make`.
class SSHKeyModelTest : public testing::Test {
protected:
    struct Shown {
        bool hasKey = false;
        Text publicKey;
        Text fingerprint;
        Text message;
        bool busy = false;

        bool operator==(const Shown&) const = default;
    };

    void make(bool keyRequired = false) {
        model =
            std::make_shared<SSHKeyModel>(SSHKeyModel::Collaborators{.keyring = keyring,
                                                                     .picker = picker,
                                                                     .fileAccess = access,
                                                                     .homeFolder = "/home/anna"},
                                          keyRequired, loop, loop);
    }

    Shown shown() const {
        return {model->hasKey(), model->publicKey(), model->fingerprint(), model->message(),
                model->busy()};
    }

    /// All that shows for a key.
    static Shown showing(const std::string& key, const Text& message, bool busy = false) {
        return {true, key, "SHA256:" + key + " (ED25519)", message, busy};
    }

    ManualRunLoop loop;
    std::shared_ptr<FakeSSHKeyring> keyring = std::make_shared<FakeSSHKeyring>();
    std::shared_ptr<FakeFolderPicker> picker = std::make_shared<FakeFolderPicker>();
    std::shared_ptr<FakeFileAccess> access = std::make_shared<FakeFileAccess>();
    std::shared_ptr<SSHKeyModel> model;
};

TEST_F(SSHKeyModelTest, BeginsWithTheKeyThereIs) {
    make();
    EXPECT_EQ(shown(), Shown());
    EXPECT_FALSE(model->keyRequired());
    keyring->key = "A";
    make(true);
    EXPECT_EQ(shown(), showing("A", std::nullopt));
    EXPECT_TRUE(model->keyRequired());
    EXPECT_EQ(loop.backgroundTasks() + loop.mainTasks(), 0);
}

TEST_F(SSHKeyModelTest, GeneratesAKeyInTheBackground) {
    keyring->key = "A";
    make();
    model->removeKey();
    keyring->key = "A";
    model->generate();
    EXPECT_EQ(shown(), (Shown{.busy = true}));
    EXPECT_EQ(keyring->generated, 0);
    loop.stepBackground();
    EXPECT_EQ(keyring->generated, 1);
    EXPECT_EQ(shown(), (Shown{.busy = true}));
    loop.stepMain();
    EXPECT_EQ(shown(), showing("ssh-ed25519 neu1 bildkurier", generated));
}

TEST_F(SSHKeyModelTest, ShowsTheOldKeyUntilTheNewOneIsThere) {
    keyring->key = "A";
    make();
    model->generate();
    EXPECT_EQ(shown(), showing("A", std::nullopt, true));
    loop.settle();
    EXPECT_EQ(model->publicKey(), "ssh-ed25519 neu1 bildkurier");
}

TEST_F(SSHKeyModelTest, ShowsNoKeyWhenNoneCouldBeGenerated) {
    keyring->key = "A";
    keyring->error = Error{"Schlüssel lässt sich nicht erzeugen: kein Platz"};
    make();
    model->generate();
    loop.settle();
    EXPECT_EQ(shown(), (Shown{.message = "Schlüssel lässt sich nicht erzeugen: kein Platz"}));
}

TEST_F(SSHKeyModelTest, LooksForKeysWhereTheUsersAre) {
    make();
    model->importKey();
    EXPECT_EQ(picker->starts, (std::vector{Url::file("/home/anna/.ssh")}));
    EXPECT_EQ(picker->prompts, (std::vector<std::string>{"Übernehmen"}));
}

TEST_F(SSHKeyModelTest, StaysAsItIsWhenNoFileIsChosen) {
    keyring->key = "A";
    make();
    model->generate();
    loop.settle();
    const Shown before = shown();
    int changes = 0;
    const Handle observer = model->observe([&] { ++changes; });
    model->importKey();
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(loop.backgroundTasks(), 0);
    EXPECT_TRUE(access->asked.empty());
}

TEST_F(SSHKeyModelTest, TakesOverTheChosenKey) {
    picker->choice = Url::file("/home/anna/.ssh/id");
    make();
    model->importKey();
    EXPECT_EQ(shown(), (Shown{.busy = true}));
    EXPECT_TRUE(keyring->imported.empty());
    loop.settle();
    EXPECT_EQ(keyring->imported, (std::vector{*picker->choice}));
    EXPECT_EQ(shown(), showing("ssh-ed25519 /home/anna/.ssh/id", "Schlüssel übernommen."));
}

TEST_F(SSHKeyModelTest, KeepsShowingTheOldKeyWhenTheChosenOneIsNoGood) {
    keyring->key = "A";
    keyring->error = Error{hasPassphrase};
    picker->choice = Url::file("/id");
    make();
    model->importKey();
    loop.settle();
    EXPECT_EQ(shown(), showing("A", hasPassphrase));
}

TEST_F(SSHKeyModelTest, HoldsThePermissionForTheFileOnlyWhileItIsTakenOver) {
    picker->choice = Url::file("/id");
    for (const bool grants : {true, false}) {
        for (const auto& error : {std::optional<Error>(), std::optional(Error{hasPassphrase})}) {
            access->grants = grants;
            keyring->error = error;
            access->asked.clear();
            bool held = false;
            keyring->onImport = [&] { held = access->isHeld(); };
            make();
            model->importKey();
            EXPECT_TRUE(access->asked.empty());
            loop.stepBackground();
            EXPECT_EQ(access->asked, (std::vector{*picker->choice}));
            EXPECT_EQ(held, grants);
            EXPECT_FALSE(access->isHeld());
            loop.settle();
        }
    }
}

TEST_F(SSHKeyModelTest, RemovesTheKeyAtOnce) {
    keyring->key = "A";
    make();
    model->removeKey();
    EXPECT_EQ(shown(), (Shown{.message = "Schlüssel der App gelöscht."}));
    EXPECT_EQ(loop.backgroundTasks(), 0);
    model->removeKey();
    EXPECT_EQ(shown(), (Shown{.message = "Schlüssel der App gelöscht."}));
}

TEST_F(SSHKeyModelTest, SaysThatTheKeyIsStillThere) {
    keyring->key = "A";
    keyring->error = Error{"Der Datenträger ist schreibgeschützt."};
    make();
    model->removeKey();
    EXPECT_EQ(shown(), showing("A", "Der Schlüssel lässt sich nicht löschen."));
    EXPECT_TRUE(model->failed());
}

TEST_F(SSHKeyModelTest, KnowsOfAKeyWhosePublicHalfCannotBeRead) {
    keyring->key = "A";
    keyring->isPublicHalfReadable = false;
    make();
    EXPECT_EQ(shown(), (Shown{.hasKey = true}));
    model->removeKey();
    EXPECT_EQ(shown(), (Shown{.message = "Schlüssel der App gelöscht."}));
}

TEST_F(SSHKeyModelTest, HasNotFailedBeforeItHasAnOutcome) {
    keyring->error = Error{"kein Platz"};
    make();
    model->generate();
    loop.settle();
    EXPECT_TRUE(model->failed());
    model->generate();
    EXPECT_FALSE(model->failed());
    loop.settle();
    EXPECT_TRUE(model->failed());
}

TEST_F(SSHKeyModelTest, TellsOfEachChange) {
    make();
    std::vector<Shown> seen;
    Handle observer = model->observe([&] { seen.push_back(shown()); });
    model->generate();
    loop.settle();
    const Shown last = showing("ssh-ed25519 neu1 bildkurier", generated);
    EXPECT_EQ(seen, (std::vector<Shown>{
                        {.busy = true},
                        {},
                        {.message = generated},
                        {.hasKey = true, .message = generated},
                        {.hasKey = true, .publicKey = last.publicKey, .message = generated},
                        last,
                    }));
    observer.reset();
    model->removeKey();
    EXPECT_EQ(seen.size(), 6);
}

TEST_F(SSHKeyModelTest, FinishesAnActionInTheBackgroundWhenItGoesMeanwhile) {
    make();
    int changes = 0;
    model->generate();
    const Handle observer = model->observe([&] { ++changes; });
    model.reset();
    loop.settle();
    EXPECT_EQ(keyring->generated, 1);
    EXPECT_EQ(changes, 0);
}

TEST_F(SSHKeyModelTest, DropsAnOutcomeThatArrivesAfterIt) {
    make();
    int changes = 0;
    model->generate();
    const Handle observer = model->observe([&] { ++changes; });
    loop.stepBackground();
    model.reset();
    loop.settle();
    EXPECT_EQ(changes, 0);
}

}  // namespace
}  // namespace bildkurier
