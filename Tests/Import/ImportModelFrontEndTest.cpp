// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportModelTest.h"

namespace bildkurier {
namespace {

using Phase = ImportModel::Phase;

/// What a front end without a window needs besides the fields.
class ImportModelFrontEndTest : public ImportModelTest {
protected:
    std::shared_ptr<FakeCamera> cameraWithAPicture(const std::string& id) {
        auto made = camera(id, "serial:" + id);
        file(*made, "A.JPG", "aaaa");
        return made;
    }
};

TEST_F(ImportModelFrontEndTest, HandsOnEachLineOfTheLog) {
    make();
    std::vector<std::string> lines;
    model->onLog = [&](const std::string& line) { lines.push_back(line); };
    for (int i = 0; i < 501; ++i) model->addLog(std::to_string(i));
    ASSERT_EQ(lines.size(), 501U);
    EXPECT_EQ(lines.back(), "500");
    EXPECT_EQ(model->log().size(), 500U);
}

TEST_F(ImportModelFrontEndTest, HoldsTheLockExactlyWhileARunLasts) {
    make();
    const auto picture = cameraWithAPicture("A");
    std::static_pointer_cast<FakeCameraFile>(picture->catalogue[0])->holdsBack = true;
    connect(picture);
    EXPECT_FALSE(lock->held);
    model->startImport();
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_TRUE(lock->held);
    loop.settle();
    std::static_pointer_cast<FakeCameraFile>(picture->catalogue[0])->deliver();
    loop.settle();
    EXPECT_FALSE(lock->held);
}

TEST_F(ImportModelFrontEndTest, ReleasesTheLockWhenTheCameraIsLost) {
    make();
    const auto picture = cameraWithAPicture("A");
    std::static_pointer_cast<FakeCameraFile>(picture->catalogue[0])->holdsBack = true;
    connect(picture);
    model->startImport();
    EXPECT_FALSE(model->awaitsCamera());
    model->cameraBrowserDidRemove(picture);
    EXPECT_TRUE(model->awaitsCamera());
    loop.settle();
    EXPECT_FALSE(lock->held);
}

TEST_F(ImportModelFrontEndTest, ReleasesTheLockWhenTheRunCannotStart) {
    make();
    store->capacity = 1;
    connect(cameraWithAPicture("A"));
    model->startImport();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_FALSE(lock->held);
}

TEST_F(ImportModelFrontEndTest, StartsNothingWhileAnotherProcessImports) {
    make();
    lock->takenByAnother = true;
    connect(cameraWithAPicture("A"));
    model->addLog("from before");
    model->startImport();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), "Es läuft schon ein Import.");
    EXPECT_EQ(model->log(), std::deque<std::string>{"from before"});
    EXPECT_TRUE(store->tree(Url::file("/bilder")).empty());
    EXPECT_EQ(sleepBlocker->begun, 0);
}

TEST_F(ImportModelFrontEndTest, TrustsTheExpectedCameraFromTheMomentItIsConnected) {
    for (const std::string expected : {"Kamera B", "serial:B"}) {
        settings->storedAutoImport = false;
        store->files.clear();
        ASSERT_TRUE(store->createDirectory(Url::file("/bilder")));
        make();
        model->trustWhenConnected(expected);
        connect(camera("A", "serial:A"));
        EXPECT_FALSE(model->autoImportEnabled());
        connect(cameraWithAPicture("B"));
        EXPECT_TRUE(model->autoImportEnabled());
        EXPECT_EQ(settings->storedIdentity, "serial:B");
        EXPECT_EQ(settings->storedName, "Kamera B");
        EXPECT_EQ(store->files.count("/bilder/JPG/A.JPG"), 1);
    }
}

TEST_F(ImportModelFrontEndTest, DoesNotTrustAnExpectedCameraThatCannotBeRecognisedAgain) {
    make();
    model->trustWhenConnected("Kamera A");
    connect(camera("A"));
    EXPECT_FALSE(model->autoImportEnabled());
    EXPECT_FALSE(settings->storedAutoImport);
}

}  // namespace
}  // namespace bildkurier
