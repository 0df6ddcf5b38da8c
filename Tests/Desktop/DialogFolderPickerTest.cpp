// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DialogFolderPicker.h"
#include "EventsUntil.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDir>
#include <QFileDialog>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <optional>

namespace bildkurier {
namespace {

/// A user who does something with the next dialog.
class DialogFolderPickerTest : public testing::Test {
protected:
    void inDialog(std::function<void(QFileDialog&)> act) {
        QTimer::singleShot(0, [act = std::move(act)] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            act(*dialog);
        });
    }

    /// As if chosen and confirmed by hand.
    static void choose(QFileDialog& dialog, const std::string& path) {
        dialog.selectFile(QString::fromStdString(path));
        QMetaObject::invokeMethod(&dialog, "accept");
    }

    TemporaryFolder folder;
    /// Where there is no portal.
    DialogFolderPicker picker{QDBusConnection("none")};
};

TEST_F(DialogFolderPickerTest, ChoosesAFolder) {
    const std::string chosen = folder.makeFolder("Bilder");
    inDialog([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
        EXPECT_EQ(dialog.labelText(QFileDialog::Accept), "Auswählen");
        EXPECT_EQ(dialog.directory().absolutePath().toStdString(), folder.path());
        EXPECT_FALSE(dialog.testOption(QFileDialog::ReadOnly));
        choose(dialog, chosen);
    });
    EXPECT_EQ(picker.chooseFolder(folder.url()), Url::file(chosen));
}

TEST_F(DialogFolderPickerTest, ChoosesAFileHiddenOnesIncluded) {
    const std::string chosen = folder.write(".schluessel", "geheim");
    inDialog([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog.labelText(QFileDialog::Accept), "Übernehmen");
        EXPECT_TRUE(dialog.filter().testFlag(QDir::Hidden));
        choose(dialog, chosen);
    });
    EXPECT_EQ(picker.chooseFile(folder.url(), "Übernehmen"), Url::file(chosen));
}

TEST_F(DialogFolderPickerTest, ChoosesNothingWhenCancelled) {
    inDialog([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(picker.chooseFolder(folder.url()), std::nullopt);
    inDialog([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(picker.chooseFile(folder.url(), "Öffnen"), std::nullopt);
}

TEST_F(DialogFolderPickerTest, AsksInFrontOfTheWindow) {
    QWindow window;
    window.show();
    window.requestActivate();
    ASSERT_TRUE(eventsUntil([&] { return QGuiApplication::focusWindow() == &window; }));
    inDialog([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowHandle()->transientParent(), &window);
        dialog.reject();
    });
    picker.chooseFolder(folder.url());
}

TEST_F(DialogFolderPickerTest, BeginsInTheNearestFolderThatThereIs) {
    folder.write("datei", "x");
    for (const std::string gone : {"weg", "weg/auch weg", "datei"}) {
        inDialog([&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.directory().absolutePath().toStdString(), folder.path());
            dialog.reject();
        });
        EXPECT_EQ(picker.chooseFolder(folder.url(gone)), std::nullopt);
    }
}

}  // namespace
}  // namespace bildkurier
