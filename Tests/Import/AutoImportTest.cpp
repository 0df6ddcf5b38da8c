// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AutoImport.h"
#include "FakeCamera.h"
#include "MemoryFileStore.h"
#include "MemorySettings.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

using Cameras = std::vector<std::shared_ptr<Camera>>;

class AutoImportTest : public testing::Test {
protected:
    void trust(const std::string& identity) {
        settings->storedAutoImport = true;
        settings->storedIdentity = identity;
    }

    static std::shared_ptr<FakeCamera> camera(std::optional<std::string> identity) {
        auto made = std::make_shared<FakeCamera>("id");
        made->deviceIdentity = std::move(identity);
        return made;
    }

    const std::shared_ptr<FakeCamera> one = camera("serial:1");
    const std::shared_ptr<FakeCamera> two = camera("serial:2");
    const std::shared_ptr<FakeCamera> nobody = camera(std::nullopt);
    std::shared_ptr<MemorySettings> settings = std::make_shared<MemorySettings>();
    AutoImport autoImport{settings, std::make_shared<MemoryFileStore>()};
};

TEST_F(AutoImportTest, NamesTheTrustedCamera) {
    EXPECT_EQ(autoImport.trustedName(), "Kamera");
    settings->storedName = "EOS R5";
    EXPECT_EQ(autoImport.trustedName(), "EOS R5");
}

TEST_F(AutoImportTest, StoresTheCameraThatItIsToTrust) {
    one->deviceName = "EOS R5";
    EXPECT_TRUE(autoImport.enable(*one));
    EXPECT_TRUE(settings->storedAutoImport);
    EXPECT_EQ(settings->storedIdentity, "serial:1");
    EXPECT_EQ(settings->storedName, "EOS R5");
}

TEST_F(AutoImportTest, TrustsTheLatestCameraOnly) {
    one->deviceName = "EOS R5";
    ASSERT_TRUE(autoImport.enable(*one));
    EXPECT_TRUE(autoImport.enable(*two));
    EXPECT_EQ(settings->storedIdentity, "serial:2");
    EXPECT_EQ(settings->storedName, "Kamera");
    EXPECT_FALSE(autoImport.cameraConnected(*one));
    EXPECT_TRUE(autoImport.cameraConnected(*two));
}

TEST_F(AutoImportTest, ShowsANameThatPeopleCanRead) {
    one->deviceName = "EOS\nR5";
    ASSERT_TRUE(autoImport.enable(*one));
    EXPECT_EQ(settings->storedName, "EOS\nR5");
    EXPECT_EQ(autoImport.trustedName(), "EOS␊R5");
    settings->storedName = "EOS\x1b[31m";
    EXPECT_EQ(autoImport.trustedName(), "EOS␛[31m");
}

TEST_F(AutoImportTest, TrustsNobodyWithoutAnIdentity) {
    EXPECT_FALSE(autoImport.trustsCamera());
    for (const auto& [identity, trusts] :
         {std::pair<std::optional<std::string>, bool>{std::nullopt, false},
          {"", false},
          {"a", true}}) {
        settings->storedIdentity = identity;
        settings->storedAutoImport = true;
        EXPECT_EQ(autoImport.trustsCamera(), trusts) << identity.value_or("none");
        settings->storedAutoImport = false;
        EXPECT_FALSE(autoImport.trustsCamera()) << identity.value_or("none");
    }
}

TEST_F(AutoImportTest, RefusesACameraThatItWouldNotRecognise) {
    nobody->deviceName = "EOS R5";
    EXPECT_FALSE(autoImport.enable(*nobody));
    EXPECT_FALSE(settings->storedAutoImport);
    EXPECT_EQ(settings->storedIdentity, std::nullopt);
    EXPECT_EQ(settings->storedName, std::nullopt);

    trust("serial:1");
    EXPECT_FALSE(autoImport.enable(*nobody));
    EXPECT_TRUE(settings->storedAutoImport);
    EXPECT_EQ(settings->storedIdentity, "serial:1");
}

TEST_F(AutoImportTest, RecognisesTheTrustedCamera) {
    const struct {
        bool enabled;
        std::optional<std::string> trusted;
        std::optional<std::string> connected;
        bool recognised;
    } cases[] = {
        {true, "serial:1", "serial:1", true},      {true, "serial:1", "serial:2", false},
        {true, "serial:1", std::nullopt, false},   {true, std::nullopt, "serial:1", false},
        {true, std::nullopt, std::nullopt, false}, {false, "serial:1", "serial:1", false},
    };
    for (const auto& [enabled, trusted, connected, recognised] : cases) {
        SCOPED_TRACE(trusted.value_or("none") + " " + connected.value_or("none"));
        autoImport.clearPending();
        settings->storedAutoImport = enabled;
        settings->storedIdentity = trusted;
        const auto attached = camera(connected);
        EXPECT_EQ(autoImport.cameraConnected(*attached), recognised);
        EXPECT_EQ(autoImport.consumePending(*attached), recognised);
    }
}

TEST_F(AutoImportTest, KeepsTheImportPendingWhenAnotherCameraIsConnected) {
    trust("serial:1");
    ASSERT_TRUE(autoImport.cameraConnected(*one));
    EXPECT_FALSE(autoImport.cameraConnected(*two));
    EXPECT_FALSE(autoImport.cameraConnected(*nobody));
    EXPECT_TRUE(autoImport.consumePending(*one));
}

TEST_F(AutoImportTest, TakesAPendingImportUpOnce) {
    trust("serial:1");
    EXPECT_FALSE(autoImport.consumePending(*one));
    ASSERT_TRUE(autoImport.cameraConnected(*one));
    EXPECT_TRUE(autoImport.consumePending(*camera("serial:1")));
    EXPECT_FALSE(autoImport.consumePending(*one));
}

TEST_F(AutoImportTest, DropsThePendingImportWhenItCannotBeTakenUp) {
    const auto switchOff = [this] { settings->storedAutoImport = false; };
    const auto trustAnother = [this] { settings->storedIdentity = "serial:2"; };
    const auto nothing = [] {};
    const struct {
        const char* why;
        std::function<void()> before;
        std::shared_ptr<FakeCamera> camera;
    } cases[] = {
        {"another camera", nothing, two},
        {"a camera without identity", nothing, nobody},
        {"switched off", switchOff, one},
        {"another one is trusted", trustAnother, one},
        {"another one is trusted, and comes", trustAnother, two},
    };
    for (const auto& [why, before, comes] : cases) {
        SCOPED_TRACE(why);
        trust("serial:1");
        ASSERT_TRUE(autoImport.cameraConnected(*one));
        before();
        EXPECT_FALSE(autoImport.consumePending(*comes));
        trust("serial:1");
        EXPECT_FALSE(autoImport.consumePending(*one));
    }
}

TEST_F(AutoImportTest, FindsTheCameraThatIsWaiting) {
    trust("serial:1");
    const auto again = camera("serial:1");
    const Cameras attached = {nobody, two, one, again};
    EXPECT_EQ(autoImport.waitingCamera(attached, nullptr), nullptr) << "nothing is pending";
    ASSERT_TRUE(autoImport.cameraConnected(*one));
    EXPECT_EQ(autoImport.waitingCamera(attached, nullptr), one);
    EXPECT_EQ(autoImport.waitingCamera(attached, two), one);
    EXPECT_EQ(autoImport.waitingCamera(attached, one), again);
    EXPECT_EQ(autoImport.waitingCamera(Cameras{nobody, two}, nullptr), nullptr);
    EXPECT_EQ(autoImport.waitingCamera(Cameras{one}, one), nullptr);
    EXPECT_EQ(autoImport.waitingCamera({}, nullptr), nullptr);
    settings->storedAutoImport = false;
    EXPECT_EQ(autoImport.waitingCamera(attached, nullptr), nullptr) << "switched off";
    settings->storedAutoImport = true;
    EXPECT_EQ(autoImport.waitingCamera(attached, nullptr), one) << "asking takes nothing up";
    autoImport.clearPending();
    EXPECT_EQ(autoImport.waitingCamera(attached, nullptr), nullptr) << "cleared";
}

}  // namespace
}  // namespace bildkurier
