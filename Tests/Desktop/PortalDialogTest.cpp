// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DialogFolderPicker.h"
#include "FakeFileChooser.h"
#include "PortalDialog.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <memory>
#include <optional>

namespace bildkurier {
namespace {

using Answer = std::optional<Url>;

class PortalDialogTest : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateBus::isInstalled()) GTEST_SKIP() << "There is no dbus-daemon.";
        bus = std::make_unique<PrivateBus>();
        chooser = std::make_unique<FakeFileChooser>();
    }

    /// What comes of asking, once the user has done something.
    auto ask(bool forFolder = true) {
        PortalDialog dialog(FakeFileChooser::bus(), {.start = Url::file("/home/anna/Bilder"),
                                                     .accept = "Auswählen",
                                                     .forFolder = forFolder});
        return dialog.ask();
    }

    std::unique_ptr<PrivateBus> bus;
    std::unique_ptr<FakeFileChooser> chooser;
};

TEST_F(PortalDialogTest, AsksForAFolderFromTheStartOn) {
    bool blocked = false;
    chooser->act = [&] {
        blocked = QApplication::activeModalWidget() != nullptr;
        chooser->answer(0, {"file:///fotos/Mai%202024%20%23%C3%A4"});
    };
    const auto answer = ask();
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(*answer, Answer(Url::file("/fotos/Mai 2024 #ä")));
    EXPECT_TRUE(blocked);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(chooser->asked["accept_label"].toString(), "Auswählen");
    EXPECT_EQ(chooser->asked["directory"].toBool(), true);
    EXPECT_EQ(chooser->asked["modal"].toBool(), true);
    EXPECT_EQ(chooser->asked["current_folder"].toByteArray(), QByteArray("/home/anna/Bilder", 18));
}

TEST_F(PortalDialogTest, AsksForAFileWhoseNameIsBytes) {
    chooser->version = 1;
    chooser->act = [&] { chooser->answer(0, {"file:///home/anna/.ssh/a%FFb"}); };
    EXPECT_EQ(ask(false).value(), Answer(Url::file("/home/anna/.ssh/a\xFF"
                                                   "b")));
    EXPECT_EQ(chooser->asked["directory"].toBool(), false);
}

TEST_F(PortalDialogTest, AnswersNothingWithoutAChoice) {
    const struct {
        uint response;
        QStringList uris;
    } cases[] = {{1, {}}, {2, {}}, {0, {}}, {0, {"sftp://nas/fotos"}}, {1, {"file:///fotos"}}};
    for (const auto& [response, uris] : cases) {
        chooser->act = [&] { chooser->answer(response, uris); };
        EXPECT_EQ(ask().value(), std::nullopt) << response;
    }
}

TEST_F(PortalDialogTest, KnowsWhereThereIsNoPortal) {
    chooser->version = 2;
    EXPECT_FALSE(ask().has_value()) << "cannot show folders";
    chooser->version = 4;
    chooser->refuses = true;
    EXPECT_FALSE(ask().has_value()) << "has no dialogs";
    chooser->refuses = false;
    chooser->act = [&] { chooser->vanish(); };
    EXPECT_FALSE(ask().has_value()) << "has gone";
    EXPECT_FALSE(ask().has_value()) << "is not there";
}

TEST_F(PortalDialogTest, IsWhatTheUserIsShown) {
    DialogFolderPicker picker(FakeFileChooser::bus());
    chooser->act = [&] { chooser->answer(0, {"file:///fotos"}); };
    EXPECT_EQ(picker.chooseFolder(Url::file("/")), Url::file("/fotos"));
    EXPECT_EQ(picker.chooseFile(Url::file("/"), "Übernehmen"), Url::file("/fotos"));
    EXPECT_EQ(chooser->asked["accept_label"].toString(), "Übernehmen");
    chooser->act = [&] { chooser->answer(1, {}); };
    EXPECT_EQ(picker.chooseFolder(Url::file("/")), std::nullopt);
}

}  // namespace
}  // namespace bildkurier
