// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardDevice.h"
#include "FakeCaptureDates.h"
#include "InTimeZone.h"
#include "ManualRunLoop.h"
#include "MarkedFolder.h"
#include "RecordingDeviceSink.h"
#include "TemporaryFolder.h"
#include "Tree.h"
#include "WithoutRights.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

using Names = std::vector<std::string>;

/// `day` of July 2024, noon in UTC.
Date july(unsigned day) {
    return std::chrono::sys_days(std::chrono::year(2024) / 7 / std::chrono::day(day)) + 12h;
}

Date now() {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

class CardDeviceTest : public testing::Test {
protected:
    ManualRunLoop loop;
    TemporaryFolder card;
    TemporaryFolder target;
    std::shared_ptr<FakeCaptureDates> dates = std::make_shared<FakeCaptureDates>();
    std::shared_ptr<RecordingDeviceSink> sink = std::make_shared<RecordingDeviceSink>();
    CardPlace place{.root = card.path(),
                    .facts = {.name = "KARTE", .serial = {}, .persistentId = "1-2", .uuid = {}},
                    .mark = markAt(card.path()),
                    .mount = {.type = "ext4"}};
    std::shared_ptr<CardDevice> device;
    Names answers;  ///< of downloads

    static FolderMark markAt(const std::string& path) {
        const auto mark = markOf(openFolder(path, O_PATH));
        EXPECT_TRUE(mark);
        return mark.value_or(FolderMark{});
    }

    void attach() {
        device = std::make_shared<CardDevice>(loop, loop, dates,
                                              std::make_shared<const CardPlace>(place));
        device->setSink(sink);
    }
    void open() {
        if (!device) attach();
        device->openSession();
        loop.settle();
    }

    std::vector<std::shared_ptr<NativeFile>> files() const {
        std::vector<std::shared_ptr<NativeFile>> all;
        for (const NativeItem& item : device->mediaFiles()) {
            all.push_back(item.file);
            for (const auto& sidecar : item.file->sidecars()) all.push_back(sidecar);
        }
        return all;
    }
    std::shared_ptr<NativeFile> file(const std::string& name) const {
        for (const auto& each : files()) {
            if (each->facts().name == name) return each;
        }
        throw std::out_of_range(name);
    }
    Names names() const {
        Names all;
        for (const auto& each : files()) all.push_back(each->facts().name.value_or("none"));
        return all;
    }
    FileFacts facts(const std::string& name) const { return file(name)->facts(); }

    void download(const std::shared_ptr<NativeFile>& from, const std::string& saveAs = "neu") {
        from->download({.directory = target.path(), .saveAs = saveAs, .overwrite = true},
                       [this](const Result<std::optional<std::string>>& saved) {
                           answers.push_back(saved ? saved->value_or("none")
                                                   : "failed: " + saved.error().message);
                       });
    }

    /// What this process holds open on the card.
    Names held() const {
        Names all;
        for (const auto& each : fs::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            const std::string path = fs::read_symlink(each, gone).string();
            if (path.starts_with(card.path())) all.push_back(path);
        }
        return all;
    }
};

TEST_F(CardDeviceTest, IsACameraWithTheFactsOfItsPlace) {
    attach();
    EXPECT_TRUE(device->isCamera());
    EXPECT_EQ(device->facts().name, "KARTE");
    EXPECT_EQ(device->facts().persistentId, "1-2");
}

TEST_F(CardDeviceTest, OpensAndThenListsNeverBeforeReturning) {
    card.write("DCIM/IMG_1.JPG", "1");
    attach();
    device->openSession();
    EXPECT_TRUE(sink->events.empty());
    EXPECT_TRUE(loop.stepBackground());
    EXPECT_TRUE(sink->events.empty());
    EXPECT_TRUE(loop.stepMain());
    EXPECT_EQ(sink->events, Names{"opened"});
    EXPECT_TRUE(device->mediaFiles().empty());
    EXPECT_TRUE(loop.stepBackground());
    EXPECT_EQ(sink->events, Names{"opened"});
    EXPECT_TRUE(loop.stepMain());
    EXPECT_EQ(sink->events, (Names{"opened", "ready"}));
    EXPECT_EQ(names(), Names{"IMG_1.JPG"});
}

TEST_F(CardDeviceTest, SaysWhyItCannotBeOpened) {
    place.root = card.path("weg");
    open();
    EXPECT_EQ(sink->events, Names{"failed: Die Karte ist nicht lesbar: Die Datei oder der Ordner "
                                  "ist nicht vorhanden"});
    EXPECT_TRUE(device->mediaFiles().empty());
}

TEST_F(CardDeviceTest, OpensNoOtherVolumeInItsPlace) {
    ++place.mark.device;
    open();
    EXPECT_EQ(sink->events,
              Names{"failed: Die Karte ist nicht lesbar: Das Gerät ist nicht mehr da"});
}

TEST_F(CardDeviceTest, OpensNoOtherVolumeWithItsDeviceInItsPlace) {
    if (!place.mark.mount) GTEST_SKIP() << "the kernel has no lasting numbers of mounts";
    open();
    EXPECT_EQ(sink->events, (Names{"opened", "ready"}));
    sink->events.clear();
    ++*place.mark.mount;
    attach();
    open();
    EXPECT_EQ(sink->events,
              Names{"failed: Die Karte ist nicht lesbar: Das Gerät ist nicht mehr da"});
}

TEST_F(CardDeviceTest, OpensNoOtherFolderInItsPlace) {
    ++place.mark.folder;
    open();
    EXPECT_EQ(sink->events, Names{"failed: Die Karte ist nicht lesbar: Die Datei oder der Ordner "
                                  "wurde unterwegs ausgetauscht"});
}

TEST_F(CardDeviceTest, NeedsTheRightToRead) {
    fs::permissions(card.path(), fs::perms::none);
    {
        const WithoutRights rights;
        open();
    }
    fs::permissions(card.path(), fs::perms::owner_all);
    EXPECT_EQ(sink->events,
              Names{"failed: Die Karte ist nicht lesbar: Die Zugriffsrechte reichen nicht aus"});
}

TEST_F(CardDeviceTest, CanBeOpenedAfterItCouldNot) {
    place.root = card.path("DCIM");
    place.mark.folder = 0;
    open();
    card.write("DCIM/IMG_1.JPG", "1");
    sink->events.clear();
    open();
    EXPECT_EQ(sink->events, (Names{"opened", "ready"}));
    EXPECT_EQ(names(), Names{"IMG_1.JPG"});
}

TEST_F(CardDeviceTest, ListsTheMediaFilesInOrderWithTheirSidecars) {
    card.write("DCIM/100EOS/IMG_2.JPG", "");
    card.write("DCIM/100EOS/IMG_1.CR3", "raw");
    card.write("DCIM/100EOS/IMG_1.XMP", "xmp!");
    card.write("DCIM/99/IMG_0.JPG", "");
    card.write("PRIVATE/M4ROOT/CLIP/C0001.MP4", "film");
    card.write("PRIVATE/M4ROOT/CLIP/C0001M01.XML", "");
    card.write("MISC/AUTPRINT.MRK", "");
    card.write("DCIM/CANONMSC/M0100.CTG", "");
    open();
    EXPECT_EQ(names(), (Names{"IMG_1.CR3", "IMG_1.XMP", "IMG_2.JPG", "IMG_0.JPG", "C0001.MP4",
                              "C0001M01.XML"}));
    EXPECT_EQ(device->mediaFiles().size(), 4U);
    EXPECT_EQ(facts("IMG_1.CR3").size, 3);
    EXPECT_EQ(facts("IMG_1.XMP").size, 4);
}

TEST_F(CardDeviceTest, ListsNothingHiddenAndNoLinks) {
    card.write("DCIM/IMG_1.JPG", "");
    card.write("DCIM/._IMG_1.JPG", "");
    card.write(".Trashes/IMG_2.JPG", "");
    fs::create_symlink("IMG_1.JPG", card.path("DCIM/IMG_3.JPG"));
    fs::create_directory_symlink("DCIM", card.path("DCIM2"));
    open();
    EXPECT_EQ(names(), Names{"IMG_1.JPG"});
}

TEST_F(CardDeviceTest, CountsWhatElseIsThereWhileItIsOpen) {
    card.write("DCIM/IMG_1.JPG", "");
    card.write("DCIM/IMG_1.CR4", "");
    card.write("DCIM/IMG_2.CR4", "");
    card.write("MISC/INDEX.CTG", "");
    card.write("IMG_1.XMP", "");
    card.write("DCIM/._IMG_1.JPG", "");
    card.write("DCIM/.IMG_2.JPG", "");
    card.write(".alt/IMG_3.JPG", "");
    card.write(".alt/.IMG_4.JPG", "");
    card.write(".Trashes/IMG_5.JPG", "");
    attach();
    EXPECT_EQ(device->otherFiles(), OtherFiles{});
    open();
    EXPECT_EQ(device->otherFiles(), (OtherFiles{.kinds = {{"CR4", 2}, {"XMP", 1}},
                                                .hidden = {{".IMG_2.JPG", 1}, {".alt", 1}}}));
    device->closeSession();
    EXPECT_EQ(device->otherFiles(), OtherFiles{});
}

TEST_F(CardDeviceTest, PassesOnNamesThatAreNoText) {
    card.write("DCIM/\xFF\xFE.JPG", "12");
    open();
    ASSERT_EQ(names(), Names{"\xFF\xFE.JPG"});
    download(files().at(0), "\xFF\xFE.JPG");
    loop.settle();
    EXPECT_EQ(tree(target.path()), (Tree{{"\xFF\xFE.JPG", "12"}}));
}

TEST_F(CardDeviceTest, DatesPhotosByTheirMetadataAndSidecarsByTheirMainFile) {
    const InTimeZone utc("UTC");
    const struct {
        const char* name;
        unsigned modified;
    } written[] = {{"A.JPG", 1}, {"A.XMP", 2}, {"B.JPG", 3}, {"B.WAV", 4},
                   {"C.MP4", 5}, {"C.THM", 6}, {"D.WAV", 7}};
    for (const auto& [name, modified] : written) {
        fs::last_write_time(card.write(name, ""),
                            std::chrono::file_clock::from_sys(july(modified)));
    }
    dates->dates = {{"A.JPG", july(20)}, {"C.MP4", july(21)}, {"D.WAV", july(22)}};
    open();
    const struct {
        const char* name;
        std::optional<Date> created;
        unsigned modified;
    } cases[] = {{"A.JPG", july(20), 1}, {"A.XMP", july(20), 2}, {"B.JPG", {}, 3},
                 {"B.WAV", july(3), 4},  {"C.MP4", {}, 5},       {"C.THM", july(5), 6},
                 {"D.WAV", {}, 7}};
    for (const auto& [name, created, modified] : cases) {
        EXPECT_EQ(facts(name).created, created) << name;
        EXPECT_EQ(facts(name).fileCreated, july(modified)) << name;
    }
    std::ranges::sort(dates->asked);
    EXPECT_EQ(dates->asked, (Names{"A.JPG", "B.JPG"}));
}

TEST_F(CardDeviceTest, NeedsNoCaptureDates) {
    dates = nullptr;
    card.write("A.JPG", "");
    open();
    EXPECT_EQ(facts("A.JPG").created, std::nullopt);
    EXPECT_NE(facts("A.JPG").fileCreated, std::nullopt);
}

TEST_F(CardDeviceTest, ReadsTheTimesOfAFatVolumeByTheCamerasClock) {
    const InTimeZone berlin("Europe/Berlin");
    place.mount = {.options = "rw,tz=UTC", .type = "vfat"};
    fs::last_write_time(card.write("A.MP4", ""),
                        std::chrono::file_clock::from_sys(july(15) + 11h + 30min));
    open();
    EXPECT_EQ(facts("A.MP4").fileCreated, july(15) + 9h + 30min);
}

TEST_F(CardDeviceTest, ListsAFolderThatCannotBeReadAsAFileThatCannotBeLoaded) {
    card.write("DCIM/100/IMG_1.JPG", "");
    card.write("DCIM/101/IMG_2.JPG", "");
    const std::string lost = card.makeFolder("lost+found");
    const std::string windows = card.makeFolder("System Volume Information");
    fs::permissions(card.path(), fs::perms::all);
    fs::last_write_time(card.path("DCIM/100"), std::chrono::file_clock::from_sys(july(1)));
    for (const std::string& path : {card.path("DCIM/100"), lost, windows})
        fs::permissions(path, fs::perms::none);
    const Date before = now();
    {
        const WithoutRights rights;
        open();
    }
    fs::permissions(card.path("DCIM/100"), fs::perms::owner_all);
    ASSERT_EQ(names(), (Names{"100", "IMG_2.JPG"}));
    EXPECT_EQ(facts("100").size, 0);
    EXPECT_EQ(facts("100").created, std::nullopt);
    EXPECT_GE(facts("100").fileCreated, before) << "a date filter would leave it out";
    EXPECT_LE(facts("100").fileCreated, now());
    EXPECT_EQ(facts("100").obstacle,
              Error{"Ordner DCIM/100 ist nicht lesbar: Die Zugriffsrechte reichen nicht aus"});
    EXPECT_EQ(facts("IMG_2.JPG").obstacle, std::nullopt);
    EXPECT_EQ(dates->asked, Names{"IMG_2.JPG"});

    download(file("100"));
    loop.settle();
    EXPECT_EQ(answers, Names{"failed: Ordner DCIM/100 ist nicht lesbar: Die Zugriffsrechte reichen "
                             "nicht aus"});
    EXPECT_TRUE(tree(target.path()).empty());
}

TEST_F(CardDeviceTest, ListsTheCardItselfWhenItCannotBeReadAnyMore) {
    card.write("A.JPG", "");
    attach();
    device->openSession();
    loop.stepBackground();
    fs::permissions(card.path(), fs::perms::none);
    {
        const WithoutRights rights;
        loop.settle();
    }
    fs::permissions(card.path(), fs::perms::owner_all);
    EXPECT_EQ(sink->events, (Names{"opened", "ready"}));
    EXPECT_EQ(names(), Names{fs::path(card.path()).filename().string()});
}

TEST_F(CardDeviceTest, LoadsAFileUnderTheNameAskedFor) {
    card.write("DCIM/100/IMG_1.JPG", "picture");
    open();
    download(file("IMG_1.JPG"), "IMG_1_1.JPG");
    EXPECT_TRUE(answers.empty());
    loop.settle();
    EXPECT_EQ(answers, Names{"IMG_1_1.JPG"});
    EXPECT_EQ(tree(target.path()), (Tree{{"IMG_1_1.JPG", "picture"}}));
}

TEST_F(CardDeviceTest, LoadsASidecar) {
    card.write("A.JPG", "picture");
    card.write("A.XMP", "words");
    open();
    download(file("A.XMP"));
    loop.settle();
    EXPECT_EQ(tree(target.path()), (Tree{{"neu", "words"}}));
}

TEST_F(CardDeviceTest, ReplacesAnOlderCopy) {
    card.write("A.JPG", "new");
    target.write("A.JPG", "an older one");
    open();
    download(file("A.JPG"), "A.JPG");
    loop.settle();
    EXPECT_EQ(tree(target.path()), (Tree{{"A.JPG", "new"}}));
}

TEST_F(CardDeviceTest, RefusesANameThatLeadsElsewhere) {
    card.write("A.JPG", "new");
    open();
    download(file("A.JPG"), "../A.JPG");
    loop.settle();
    EXPECT_EQ(answers, Names{"failed: Ungültiger Dateiname"});
}

TEST_F(CardDeviceTest, NeverLoadsThroughALinkPutThereLater) {
    card.write("DCIM/A.JPG", "ours");
    card.write("DCIM/B/B.JPG", "ours");
    target.write("secret/B.JPG", "them");
    open();
    const auto a = file("A.JPG");
    const auto b = file("B.JPG");
    fs::remove_all(card.path("DCIM"));
    card.makeFolder("DCIM");
    fs::create_symlink(target.path("secret/B.JPG"), card.path("DCIM/A.JPG"));
    fs::create_directory_symlink(target.path("secret"), card.path("DCIM/B"));
    download(a);
    download(b);
    loop.settle();
    ASSERT_EQ(answers.size(), 2U);
    for (const std::string& answer : answers) EXPECT_TRUE(answer.starts_with("failed: "));
    EXPECT_EQ(tree(target.path()), (Tree{{"secret/", ""}, {"secret/B.JPG", "them"}}));
}

TEST_F(CardDeviceTest, IsNotHeldUpByAPipePutThereLater) {
    card.write("A.MP4", "");
    open();
    fs::remove(card.path("A.MP4"));
    ASSERT_EQ(::mkfifo(card.path("A.MP4").c_str(), 0600), 0);
    download(file("A.MP4"));
    loop.settle();
    EXPECT_EQ(answers, Names{"failed: Auf der Karte steht dort keine Datei"});
}

TEST_F(CardDeviceTest, SaysThatAFileOrTheWholeCardIsGone) {
    card.write("A.JPG", "a");
    open();
    fs::remove(card.path("A.JPG"));
    download(file("A.JPG"));
    loop.settle();
    fs::remove(card.path());
    download(file("A.JPG"));
    loop.settle();
    EXPECT_EQ(answers, (Names{"failed: Die Datei ist auf der Karte nicht lesbar: Die Datei oder "
                              "der Ordner ist nicht vorhanden",
                              "failed: Die Karte ist nicht lesbar: Die Datei oder der Ordner ist "
                              "nicht vorhanden"}));
}

TEST_F(CardDeviceTest, ShowsWhereItsFilesAreUntilItIsClosed) {
    card.write("DCIM/A.JPG", "a");
    open();
    const auto first = file("A.JPG");
    EXPECT_EQ(first->place(),
              (PlacedFile{.folder = card.url(), .path = "DCIM/A.JPG", .mark = place.mark}));
    device->closeSession();
    EXPECT_EQ(first->place(), std::nullopt);
}

TEST_F(CardDeviceTest, TellsWhetherItHoldsTheSameFiles) {
    const std::string old = card.write("DCIM/A.JPG", "a");
    card.write("DCIM/B.JPG", "b");
    card.write("DCIM/100/C.MP4", "c");
    open();
    const auto holdsTheSame = device->sameFilesTest();
    EXPECT_TRUE(holdsTheSame());
    card.write("DCIM/INDEX.DAT", "no picture");
    EXPECT_TRUE(holdsTheSame());

    card.write("DCIM/100/D.MP4", "d");
    EXPECT_FALSE(holdsTheSame()) << "added";
    fs::remove(card.path("DCIM/100/D.MP4"));
    EXPECT_TRUE(holdsTheSame());

    const auto before = fs::last_write_time(old);
    fs::last_write_time(old, before + 2s);
    EXPECT_FALSE(holdsTheSame()) << "written anew";
    card.write("DCIM/A.JPG", "longer");
    fs::last_write_time(old, before);
    EXPECT_FALSE(holdsTheSame()) << "another size";
    fs::remove(old);
    EXPECT_FALSE(holdsTheSame()) << "removed";
}

TEST_F(CardDeviceTest, TellsThatAFolderCanBeReadAsLittleAsBefore) {
    card.write("DCIM/100/A.JPG", "a");
    fs::permissions(card.path(), fs::perms::all);
    fs::permissions(card.path("DCIM/100"), fs::perms::none);
    {
        const WithoutRights rights;
        open();
        EXPECT_TRUE(device->sameFilesTest()());
    }
    fs::permissions(card.path("DCIM/100"), fs::perms::owner_all);
    EXPECT_FALSE(device->sameFilesTest()());
}

TEST_F(CardDeviceTest, HoldsNoFilesWhileItIsNotOpen) {
    card.write("A.JPG", "a");
    attach();
    EXPECT_FALSE(device->sameFilesTest()());
    open();
    const auto holdsTheSame = device->sameFilesTest();
    fs::rename(card.path("A.JPG"), card.path("B.JPG"));
    EXPECT_FALSE(holdsTheSame());
    fs::rename(card.path("B.JPG"), card.path("A.JPG"));
    EXPECT_TRUE(holdsTheSame());
    device->cardRemoved();
    EXPECT_FALSE(holdsTheSame());
}

TEST_F(CardDeviceTest, DoesNotTakeACopyInItsPlaceForItself) {
    const std::string old = card.write("karte/A.JPG", "a");
    place.root = card.path("karte");
    place.mark = markAt(place.root);
    open();
    const auto holdsTheSame = device->sameFilesTest();
    EXPECT_TRUE(holdsTheSame());
    fs::rename(place.root, card.path("weg"));
    const std::string copy = card.write("karte/A.JPG", "a");
    fs::last_write_time(copy, fs::last_write_time(card.path("weg/A.JPG")));
    EXPECT_FALSE(holdsTheSame());
}

TEST_F(CardDeviceTest, HoldsNothingOpenOnTheCardBetweenTwoPiecesOfWork) {
    card.write("DCIM/A.JPG", "a");
    open();
    EXPECT_EQ(held(), Names{});
    download(file("A.JPG"));
    loop.settle();
    EXPECT_EQ(answers, Names{"neu"});
    EXPECT_EQ(held(), Names{});
    device->openSession();
    loop.stepBackground();
    device->closeSession();
    loop.settle();
    EXPECT_EQ(held(), Names{});
}

TEST_F(CardDeviceTest, DropsAnswersThatComeAfterItWasClosed) {
    card.write("A.JPG", "a");
    for (int steps = 0; steps < 4; ++steps) {
        attach();
        device->openSession();
        for (int i = 0; i < steps; ++i) {
            if (!loop.stepMain()) loop.stepBackground();
        }
        const Names before = sink->events;
        device->closeSession();
        loop.settle();
        EXPECT_EQ(sink->events, before) << steps;
        EXPECT_TRUE(device->mediaFiles().empty());
    }
}

TEST_F(CardDeviceTest, DropsAnswersThatComeAfterItWasDestroyed) {
    card.write("A.JPG", "a");
    for (int steps = 0; steps < 4; ++steps) {
        attach();
        device->openSession();
        for (int i = 0; i < steps; ++i) {
            if (!loop.stepMain()) loop.stepBackground();
        }
        const Names before = sink->events;
        device.reset();
        loop.settle();
        EXPECT_EQ(sink->events, before) << steps;
    }
}

TEST_F(CardDeviceTest, MayBeClosedFromItsOwnEvents) {
    card.write("A.JPG", "a");
    attach();
    sink->onEvent = [this] { device->closeSession(); };
    open();
    EXPECT_EQ(sink->events, Names{"opened"});
    sink->onEvent = [this] { device.reset(); };
    open();
    EXPECT_EQ(sink->events, (Names{"opened", "opened"}));
}

TEST_F(CardDeviceTest, ListsAnewWhenOpenedAgain) {
    card.write("A.JPG", "a");
    open();
    card.write("B.JPG", "b");
    EXPECT_EQ(names(), Names{"A.JPG"});
    device->closeSession();
    open();
    EXPECT_EQ(names(), (Names{"A.JPG", "B.JPG"}));
    EXPECT_EQ(sink->events, (Names{"opened", "ready", "opened", "ready"}));
}

TEST_F(CardDeviceTest, AnswersOnceWhenOpenedTwice) {
    card.write("A.JPG", "a");
    attach();
    device->openSession();
    device->openSession();
    loop.settle();
    EXPECT_EQ(sink->events, (Names{"opened", "ready"}));
}

TEST_F(CardDeviceTest, StopsReadingDatesWhenItIsClosed) {
    for (int i = 0; i < 200; ++i) card.write(std::to_string(i) + ".JPG", "");
    attach();
    dates->onAsk = [this] { device->closeSession(); };
    open();
    constexpr std::size_t mostAtOnce = 8;
    EXPECT_LE(dates->asked.size(), mostAtOnce);
    EXPECT_EQ(sink->events, Names{"opened"});
}

TEST_F(CardDeviceTest, SaysThatTheCardWasRemoved) {
    card.write("A.JPG", "a");
    open();
    const auto first = file("A.JPG");
    download(first);
    device->cardRemoved();
    loop.settle();
    EXPECT_TRUE(device->mediaFiles().empty());
    device->closeSession();
    download(first);
    device.reset();
    loop.settle();
    EXPECT_EQ(answers, Names(2, "failed: Die Karte wurde entfernt"));
    EXPECT_TRUE(tree(target.path()).empty());
}

TEST_F(CardDeviceTest, FailsDownloadsOfASessionThatHasEnded) {
    card.write("A.JPG", "a");
    open();
    const auto first = file("A.JPG");
    download(first);
    device->closeSession();
    loop.settle();
    open();
    download(first);
    loop.settle();
    device.reset();
    download(first);
    loop.settle();
    EXPECT_EQ(answers, Names(3, "failed: Das Laden wurde abgebrochen"));
    EXPECT_TRUE(tree(target.path()).empty());
}

}  // namespace
}  // namespace bildkurier
