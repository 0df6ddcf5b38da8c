// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeServer.h"
#include "ImportModelWithTwoCameras.h"
#include "RecordingFileStore.h"

#include <memory>

namespace bildkurier {
namespace {

constexpr auto otherKey =
    "Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden. Nur wenn der Server neu "
    "eingerichtet wurde: gespeicherten Server-Schlüssel vergessen.";
constexpr auto forgotten = "Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“.";

/// A model whose form names a server that is there.
class ImportModelServerTest : public ImportModelWithTwoCameras {
protected:
    using Servers = std::vector<FakeSSHKeyring::Server>;

    ImportModelServerTest() {
        files = server;
        keyring->key = "ssh-ed25519 A";
        store->folders.insert("/bilder");
        make();
        fill("anna", "nas:2222", "/fotos");
    }

    void fill(const std::string& user, const std::string& host, const std::string& path) {
        model->setSftpUser(user);
        model->setSftpHost(host);
        model->setSftpPath(path);
    }

    void check() {
        model->applySFTPDestination();
        loop.settle();
    }

    void expectFailed(const std::string& status) {
        EXPECT_EQ(model->sftpStatus(), status);
        EXPECT_FALSE(model->sftpConnected());
        EXPECT_FALSE(model->sftpChecking());
        EXPECT_EQ(model->dest(), Url::file("/bilder"));
        EXPECT_EQ(model->destinationKind(), DestinationKind::folder);
        EXPECT_EQ(settings->storedKind, DestinationKind::folder);
    }

    std::shared_ptr<FakeServer> server = std::make_shared<FakeServer>(store, keyring);
    const Url fotos{
        .scheme = "sftp", .user = "anna", .host = "nas", .port = 2222, .path = "/fotos"};
};

TEST_F(ImportModelServerTest, KnowsNothingOfAServerAtFirst) {
    EXPECT_EQ(model->sftpStatus(), std::nullopt);
    EXPECT_FALSE(model->sftpConnected());
    EXPECT_FALSE(model->sftpChecking());
    EXPECT_EQ(model->sftpHostFingerprint(), std::nullopt);
    EXPECT_FALSE(model->sftpHostIsNew());
    EXPECT_FALSE(model->sftpHostKeyMismatch());
    EXPECT_TRUE(keyring->fingerprinted.empty());
}

TEST_F(ImportModelServerTest, DoesNothingButShowWhatIsTypedUntilItIsApplied) {
    record();
    fill("bernd", "anderswo", "/x");
    EXPECT_EQ(model->sftpUser(), "bernd");
    EXPECT_EQ(model->sftpHost(), "anderswo");
    EXPECT_EQ(model->sftpPath(), "/x");
    EXPECT_EQ(settings->storedUser + settings->storedHost + settings->storedPath, "");
    EXPECT_EQ(model->dest(), Url::file("/bilder"));
    EXPECT_EQ(loop.backgroundTasks(), 0);
}

TEST_F(ImportModelServerTest, MakesAServerThatItReachesTheDestination) {
    check();
    EXPECT_EQ(model->sftpStatus(), "Verbunden mit nas:2222.");
    EXPECT_TRUE(model->sftpConnected());
    EXPECT_FALSE(model->sftpChecking());
    EXPECT_EQ(model->dest(), fotos);
    EXPECT_TRUE(model->destIsSFTP());
    EXPECT_EQ(model->destinationKind(), DestinationKind::sftp);
    EXPECT_EQ(settings->storedKind, DestinationKind::sftp);
    EXPECT_EQ(settings->storedDestination, Url::file("/bilder"));
    EXPECT_TRUE(store->folders.contains("/fotos"));
    EXPECT_EQ(keyring->fingerprinted, (Servers{{"nas", 2222}, {"nas", 2222}}));
}

TEST_F(ImportModelServerTest, TrimsAndStoresTheForm) {
    fill(" \tanna ", "\t nas ", " Meine Fotos\t");
    model->applySFTPDestination();
    EXPECT_EQ(model->sftpUser(), "anna");
    EXPECT_EQ(model->sftpHost(), "nas");
    EXPECT_EQ(model->sftpPath(), "Meine Fotos");
    EXPECT_EQ(settings->storedUser, "anna");
    EXPECT_EQ(settings->storedHost, "nas");
    EXPECT_EQ(settings->storedPath, "Meine Fotos");
    loop.settle();
    EXPECT_EQ(model->dest(),
              (Url{.scheme = "sftp", .user = "anna", .host = "nas", .path = "/Meine Fotos"}));
    EXPECT_EQ(model->sftpStatus(), "Verbunden mit nas.");
}

TEST_F(ImportModelServerTest, TrimsNothingButSpacesAndTabs) {
    fill("\n", " \t ", "\u00a0x\n");
    model->applySFTPDestination();
    EXPECT_EQ(settings->storedUser, "\n");
    EXPECT_EQ(settings->storedHost, "");
    EXPECT_EQ(settings->storedPath, "\u00a0x\n");
}

TEST_F(ImportModelServerTest, ForgetsTheLastCheckWhenItBeginsAnother) {
    server->hostKey = "SHA256:zweiter (ED25519)";
    check();
    server->hostKey = "SHA256:dritter (ED25519)";
    check();
    ASSERT_TRUE(model->sftpHostKeyMismatch());
    ASSERT_TRUE(model->sftpHostFingerprint());
    model->applySFTPDestination();
    EXPECT_EQ(model->sftpStatus(), std::nullopt);
    EXPECT_FALSE(model->sftpConnected());
    EXPECT_TRUE(model->sftpChecking());
    EXPECT_EQ(model->sftpHostFingerprint(), std::nullopt);
    EXPECT_FALSE(model->sftpHostIsNew());
    EXPECT_FALSE(model->sftpHostKeyMismatch());
    loop.stepBackground();
    EXPECT_TRUE(model->sftpChecking());
    loop.stepMain();
    EXPECT_FALSE(model->sftpChecking());
}

TEST_F(ImportModelServerTest, TellsTheFirstMeetingWithAServerFromLaterOnes) {
    check();
    EXPECT_EQ(model->sftpHostFingerprint(), "SHA256:erster (ED25519)");
    EXPECT_TRUE(model->sftpHostIsNew());
    check();
    EXPECT_EQ(model->sftpHostFingerprint(), "SHA256:erster (ED25519)");
    EXPECT_FALSE(model->sftpHostIsNew());
    EXPECT_TRUE(model->sftpConnected());
}

TEST_F(ImportModelServerTest, AsksForNoServersKeyWithoutOneOfItsOwn) {
    keyring->key.reset();
    keyring->hosts[{"nas", 2222}] = "SHA256:alt (RSA)";
    check();
    EXPECT_TRUE(model->sftpConnected());
    EXPECT_EQ(model->sftpHostFingerprint(), std::nullopt);
    EXPECT_FALSE(model->sftpHostIsNew());
    EXPECT_TRUE(keyring->fingerprinted.empty());
}

TEST_F(ImportModelServerTest, WorksWithoutAKeyring) {
    keyring->hosts[{"nas", 2222}] = server->hostKey;
    keyring.reset();
    make();
    fill("anna", "nas:2222", "/fotos");
    check();
    EXPECT_TRUE(model->sftpConnected());
    EXPECT_EQ(model->sftpHostFingerprint(), std::nullopt);
    EXPECT_FALSE(model->sftpHostIsNew());
    model->forgetSFTPHostKey();
    EXPECT_EQ(model->sftpStatus(), forgotten);
}

TEST_F(ImportModelServerTest, ReportsTheFirstObstacle) {
    const struct {
        std::optional<std::string> refusal;
        bool isWritable;
        std::string status;
    } cases[] = {
        {"Connection refused", true, "Ordner lässt sich nicht anlegen: Connection refused"},
        {"Connection refused", false, "Ordner lässt sich nicht anlegen: Connection refused"},
        {std::nullopt, false, "Zielordner ist nicht beschreibbar."},
    };
    for (const auto& [refusal, isWritable, status] : cases) {
        server->refusal = refusal;
        server->isWritable = isWritable;
        check();
        expectFailed(status);
        EXPECT_FALSE(model->sftpHostKeyMismatch());
    }
}

TEST_F(ImportModelServerTest, AsksWhetherItMayWriteOnlyWhereTheFolderIsThere) {
    const auto recording = std::make_shared<RecordingFileStore>(server);
    files = recording;
    make();
    fill("", "nas", "");
    server->refusal = "Permission denied (publickey).";
    check();
    EXPECT_EQ(recording->calls, (Names{"createDirectory /"}));
    recording->calls.clear();
    server->refusal.reset();
    check();
    EXPECT_EQ(recording->calls, (Names{"createDirectory /", "isWritableDirectory /"}));
}

TEST_F(ImportModelServerTest, ReportsAKeyThatWasKnownEvenWhenTheCheckFails) {
    check();
    model->setDestinationKind(DestinationKind::folder);
    server->refusal = "Connection timed out";
    check();
    expectFailed("Ordner lässt sich nicht anlegen: Connection timed out");
    EXPECT_EQ(model->sftpHostFingerprint(), "SHA256:erster (ED25519)");
    EXPECT_FALSE(model->sftpHostIsNew());
}

TEST_F(ImportModelServerTest, AdvisesWhenAServerShowsAnotherKeyAndMeetsItAnewOnceForgotten) {
    keyring->hosts[{"nas", 2222}] = "SHA256:alt (ED25519)";
    check();
    expectFailed(otherKey);
    EXPECT_TRUE(model->sftpHostKeyMismatch());
    EXPECT_EQ(model->sftpHostFingerprint(), "SHA256:alt (ED25519)");
    EXPECT_FALSE(model->sftpHostIsNew());

    model->forgetSFTPHostKey();
    EXPECT_EQ(keyring->forgotten, (Servers{{"nas", 2222}}));
    EXPECT_EQ(model->sftpStatus(), forgotten);
    EXPECT_FALSE(model->sftpHostKeyMismatch());
    EXPECT_EQ(model->sftpHostFingerprint(), std::nullopt);
    EXPECT_FALSE(model->sftpConnected());
    EXPECT_EQ(loop.backgroundTasks(), 0);

    check();
    EXPECT_TRUE(model->sftpConnected());
    EXPECT_TRUE(model->sftpHostIsNew());
    EXPECT_EQ(model->sftpHostFingerprint(), server->hostKey);
    EXPECT_EQ(model->dest(), fotos);
}

TEST_F(ImportModelServerTest, ForgetsTheServerThatTheFormNames) {
    fill("anna", "andere:22", "/x");
    model->forgetSFTPHostKey();
    fill("anna", "", "/x");
    model->forgetSFTPHostKey();
    fill("anna", "dritte:0", "/x");
    model->forgetSFTPHostKey();
    EXPECT_EQ(keyring->forgotten,
              (Servers{{"andere", 22}, {"", std::nullopt}, {"dritte:0", std::nullopt}}));
}

TEST_F(ImportModelServerTest, KeepsTheServerAsTheDestinationWhileItsKeyIsForgotten) {
    check();
    model->forgetSFTPHostKey();
    EXPECT_EQ(model->dest(), fotos);
    EXPECT_FALSE(model->sftpConnected());
}

TEST_F(ImportModelServerTest, ReadsTheServerOnceItIsTheDestination) {
    store->files["/fotos/A.JPG"] = "aaaa";
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    EXPECT_EQ(newNames(), (Names{"A.JPG"}));
    check();
    EXPECT_EQ(model->status(), nothingNew);
    EXPECT_TRUE(newNames().empty());
    store->files.erase("/fotos/A.JPG");
    check();  // the same server again
    EXPECT_EQ(newNames(), (Names{"A.JPG"}));
}

TEST_F(ImportModelServerTest, LoadsNothingWhileItIsNotKnownWhatTheServerHas) {
    store->files["/fotos/A.JPG"] = "aaaa";
    file(*attached, "A.JPG", "aaaa");
    server->breakOfListings = "Broken pipe";
    connect(attached);
    check();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_TRUE(model->destUnlisted());
    EXPECT_EQ(model->status(), ImportModel::unlistedStatus);
    ASSERT_EQ(model->log().size(), 1);
    EXPECT_TRUE(model->log()[0].starts_with("✗ "));
    EXPECT_TRUE(
        model->log()[0].ends_with(" Zielordner nicht vollständig aufgelistet: Broken pipe"));

    model->setUseFromDate(true);
    EXPECT_EQ(model->status(), ImportModel::unlistedStatus);
    model->startImport();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), ImportModel::unlistedStatus);
    EXPECT_EQ(model->log().size(), 1);

    server->breakOfListings.reset();
    check();
    EXPECT_FALSE(model->destUnlisted());
    EXPECT_EQ(model->status(), nothingNew);
}

TEST_F(ImportModelServerTest, LetsAnAutoImportWaitForAServerThatItCouldNotList) {
    attached->deviceIdentity = "SN";
    ASSERT_TRUE(autoImport->enable(*attached));
    file(*attached, "A.JPG", "aaaa");
    check();
    server->breakOfListings = "Broken pipe";
    connect(attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), ImportModel::unlistedWaitStatus);
    EXPECT_TRUE(model->isPostponed());
    ASSERT_EQ(model->log().size(), 2);
    EXPECT_TRUE(model->log()[1].ends_with(std::string(" Auto-Import wartet: ") +
                                          ImportModel::unlistedWaitStatus));
    loop.advance(Duration(60));
    EXPECT_EQ(model->log().size(), 2) << "once is enough";
    server->breakOfListings = "Connection reset";
    loop.advance(Duration(59));
    EXPECT_EQ(model->log().size(), 2) << "nobody looks more often than once a minute";
    loop.advance(Duration(60));
    ASSERT_EQ(model->log().size(), 3);
    EXPECT_TRUE(model->log()[2].ends_with("aufgelistet: Connection reset"));
    EXPECT_FALSE(lock->held);

    server->breakOfListings.reset();
    loop.advance(Duration(60));
    EXPECT_EQ(store->files.at("/fotos/JPG/A.JPG"), "aaaa");
    EXPECT_FALSE(model->isPostponed());
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelServerTest, SuspendsAnAutoImportToAServerThatHasNotBeenNamed) {
    attached->deviceIdentity = "SN";
    ASSERT_TRUE(autoImport->enable(*attached));
    file(*attached, "A.JPG", "aaaa");
    model->setDestinationKind(DestinationKind::sftp);
    loop.settle();
    connect(attached);
    EXPECT_EQ(model->status(),
              "Auto-Import ausgesetzt: Server angeben: unter Ziel den Rechner eintragen, dann "
              "„Verbinden und prüfen“.");
    ASSERT_EQ(model->log().size(), 1);
    EXPECT_TRUE(model->log()[0].starts_with("✗ " + model->status()));
    EXPECT_FALSE(model->isPostponed());
    EXPECT_FALSE(lock->held);
}

TEST_F(ImportModelServerTest, LetsAnAutoImportWaitForAServerThatCannotBeReached) {
    attached->deviceIdentity = "SN";
    ASSERT_TRUE(autoImport->enable(*attached));
    file(*attached, "A.JPG", "aaaa");
    check();
    server->refusal = "Connection refused";
    connect(attached);
    EXPECT_EQ(model->status(), ImportModel::unlistedWaitStatus);
    server->refusal.reset();
    loop.advance(Duration(60));
    EXPECT_EQ(store->files.at("/fotos/JPG/A.JPG"), "aaaa");
}

TEST_F(ImportModelServerTest, PromisesNothingAnyMoreOnceAutoImportIsSwitchedOff) {
    attached->deviceIdentity = "SN";
    ASSERT_TRUE(autoImport->enable(*attached));
    file(*attached, "A.JPG", "aaaa");
    check();
    server->breakOfListings = "Broken pipe";
    connect(attached);
    ASSERT_EQ(model->status(), ImportModel::unlistedWaitStatus);
    model->setAutoImportEnabled(false);
    EXPECT_EQ(model->status(), ImportModel::unlistedStatus);
    EXPECT_FALSE(model->isPostponed());
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelServerTest, WaitsNoLongerWhereNothingIsMissingAfterAll) {
    attached->deviceIdentity = "SN";
    ASSERT_TRUE(autoImport->enable(*attached));
    file(*attached, "A.JPG", "aaaa");
    check();
    server->breakOfListings = "Broken pipe";
    connect(attached);
    ASSERT_TRUE(model->isPostponed());
    store->files["/fotos/A.JPG"] = "aaaa";
    server->breakOfListings.reset();
    loop.advance(Duration(60));
    EXPECT_EQ(model->status(),
              "Auto-Import: alle Dateien dieser Kamera sind bereits im Zielordner.");
    EXPECT_FALSE(model->isPostponed());
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelServerTest, GoesOnOnceItIsKnownWhatTheServerHas) {
    attached->deviceIdentity = "SN";
    const auto held = file(*attached, "A.JPG", "aaaa");
    held->holdsBack = true;
    check();
    connect(attached);
    model->startImport();
    loop.settle();
    ASSERT_EQ(model->phase(), Phase::importing);
    model->cameraBrowserDidRemove(attached);
    loop.settle();
    server->breakOfListings = "Broken pipe";
    connect(attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), ImportModel::unlistedWaitStatus);
    EXPECT_TRUE(model->awaitsCamera());
    EXPECT_FALSE(lock->held);
    EXPECT_TRUE(model->log().back().ends_with(std::string(" Fortsetzung wartet: ") +
                                              ImportModel::unlistedWaitStatus));

    held->holdsBack = false;
    server->breakOfListings.reset();
    loop.advance(Duration(60));
    EXPECT_FALSE(model->awaitsCamera());
    EXPECT_EQ(store->files.at("/fotos/JPG/A.JPG"), "aaaa");
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelServerTest, LeavesTheDestinationUnreadByACheckThatFails) {
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    record();
    server->refusal = "Connection refused";
    check();
    EXPECT_EQ(phases, (Phases{Phase::ready}));
}

TEST_F(ImportModelServerTest, ShowsWhatCameOfTheLastOfSeveralChecks) {
    model->applySFTPDestination();
    fill("anna", "zweiter", "/fotos");
    model->applySFTPDestination();
    loop.stepBackground();
    loop.stepMain();
    EXPECT_EQ(model->sftpStatus(), "Verbunden mit nas:2222.");
    EXPECT_EQ(model->dest(), fotos);
    loop.settle();
    EXPECT_EQ(model->sftpStatus(), "Verbunden mit zweiter.");
    EXPECT_EQ(model->dest().host, "zweiter");
}

TEST_F(ImportModelServerTest, GoesBackToTheStoredFolderAndServer) {
    check();
    model->setDestinationKind(DestinationKind::folder);
    EXPECT_EQ(model->dest(), Url::file("/bilder"));
    EXPECT_EQ(settings->storedKind, DestinationKind::folder);
    fill("bernd", "ungeprüft", "/x");
    model->setDestinationKind(DestinationKind::sftp);
    EXPECT_EQ(model->dest(), fotos);
    EXPECT_EQ(settings->storedKind, DestinationKind::sftp);
}

TEST_F(ImportModelServerTest, DoesNothingWhenTheKindOfDestinationStaysTheSame) {
    model->setDest(Url::file("/anderswo"));
    settings->storedDestination = Url::file("/dritter");
    model->setDestinationKind(DestinationKind::folder);
    EXPECT_EQ(model->dest(), Url::file("/anderswo"));
}

TEST_F(ImportModelServerTest, DropsACheckThatEndsAfterIt) {
    model->applySFTPDestination();
    model.reset();
    loop.settle();
    EXPECT_EQ(settings->storedKind, DestinationKind::folder);
    EXPECT_TRUE(store->folders.contains("/fotos"));
}

TEST_F(ImportModelServerTest, ImportsToTheServer) {
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    check();
    model->startImport();
    loop.settle();
    EXPECT_EQ(store->files.at("/fotos/JPG/A.JPG"), "aaaa");
    EXPECT_EQ(model->status(), nothingNew);
}

TEST_F(ImportModelServerTest, AsksForAServerThatHasNotBeenNamed) {
    constexpr auto advice =
        "Server angeben: unter Ziel den Rechner eintragen, dann „Verbinden und prüfen“.";
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    const auto before = store->tree(Url::file("/"));
    EXPECT_FALSE(model->destNeedsServer());
    model->setDestinationKind(DestinationKind::sftp);
    loop.settle();
    EXPECT_TRUE(model->destNeedsServer());
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), advice);
    model->setUseFromDate(true);
    EXPECT_EQ(model->status(), advice);
    model->startImport();
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), advice);
    EXPECT_EQ(store->tree(Url::file("/")), before);
    EXPECT_FALSE(lock->held);
    EXPECT_TRUE(model->log().empty()) << "nothing has failed";

    check();
    EXPECT_FALSE(model->destNeedsServer());
    model->startImport();
    loop.settle();
    EXPECT_EQ(store->files.at("/fotos/JPG/A.JPG"), "aaaa");
}

TEST_F(ImportModelServerTest, DescribesTheDestination) {
    const struct {
        Url dest;
        std::string description;
    } cases[] = {
        {fotos, "anna@nas/fotos"},
        {{.scheme = "sftp", .host = "nas", .path = "/fotos"}, "@nas/fotos"},
        {{.scheme = "sftp", .user = "anna", .path = "/"}, "anna@/"},
        {Url::file("/home/anna"), "~"},
        {Url::file("/home/anna/Bilder"), "~/Bilder"},
        {Url::file("/home/annabell/Bilder"), "/home/annabell/Bilder"},
        {Url::file("/mnt/home/anna"), "/mnt/home/anna"},
        {Url::file("/mnt/\n\xff"), "/mnt/␊�"},
    };
    for (const auto& [dest, description] : cases) {
        model->setDest(dest);
        EXPECT_EQ(model->destDescription(), description);
        EXPECT_EQ(model->destIsSFTP(), dest.scheme == "sftp");
    }
}

TEST_F(ImportModelServerTest, ShowsOnlyAFolderThatMayBeUsed) {
    model->showDestInFinder();
    EXPECT_EQ(workspace->opened, (std::vector{Url::file("/bilder")}));
    access->granted = false;
    model->showDestInFinder();
    access->granted = true;
    model->setDest(fotos);
    model->showDestInFinder();
    EXPECT_EQ(workspace->opened.size(), 1);
}

TEST_F(ImportModelServerTest, BeginsAtTheStoredFolderWhenAFolderIsChosenInsteadOfAServer) {
    check();
    model->chooseDest();
    EXPECT_EQ(picker->starts, (std::vector{Url::file("/bilder")}));
    EXPECT_EQ(model->dest(), fotos);
    EXPECT_TRUE(access->remembered.empty());
    picker->choice = Url::file("/neu");
    model->chooseDest();
    EXPECT_EQ(model->dest(), Url::file("/neu"));
    EXPECT_EQ(access->remembered, (std::vector{Url::file("/neu")}));
}

}  // namespace
}  // namespace bildkurier
