// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeNativeDevice.h"
#include "FakeNativeFile.h"
#include "ImageCaptureCamera.h"
#include "RecordingCameraDelegate.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string_view>

namespace bildkurier {
namespace {

using Text = std::optional<std::string>;

std::shared_ptr<ImageCaptureCamera> cameraWith(DeviceFacts facts) {
    return ImageCaptureCamera::make(std::make_shared<FakeNativeDevice>(std::move(facts)));
}

std::shared_ptr<FakeNativeFile> file(Text name) {
    return std::make_shared<FakeNativeFile>(FileFacts{.name = std::move(name)});
}

std::vector<Text> names(const ImageCaptureCamera& camera) {
    std::vector<Text> all;
    for (const auto& each : camera.files()) all.push_back(each->name());
    return all;
}

/// In upper case.
bool isRandomUuid(const std::string& text) {
    constexpr std::string_view form = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
    return std::ranges::equal(text, form, [](char c, char wanted) {
        if (wanted == 'x') return std::string_view("0123456789ABCDEF").contains(c);
        if (wanted == 'y') return std::string_view("89AB").contains(c);
        return c == wanted;
    });
}

TEST(ImageCaptureCamera, OverlapsWithFoldersOnItAndAroundIt) {
    const TemporaryFolder folder;
    folder.makeFolder("card/DCIM");
    const auto test = cameraWith({.folder = folder.path("card")})->overlapTest();
    EXPECT_TRUE(test(Url::file(folder.path("card/DCIM"))));
    EXPECT_TRUE(test(Url::file(folder.path())));
    EXPECT_FALSE(test(Url::file(folder.path("bilder"))));
    Url server = Url::file(folder.path("card/DCIM"));
    server.scheme = "sftp";
    EXPECT_FALSE(test(server));
    EXPECT_FALSE(cameraWith({})->overlapTest()(Url::file("/"))) << "it is no folder";
}

TEST(ImageCaptureCamera, TellsWhatElseTheDeviceHas) {
    const auto device = std::make_shared<FakeNativeDevice>();
    device->others = {.kinds = {{"CR4", 2}}, .hidden = {{".alt", 1}}};
    EXPECT_EQ(ImageCaptureCamera::make(device)->otherFiles(), device->others);
}

TEST(ImageCaptureCamera, IsIdentifiedByTheFirstThingThatLasts) {
    const struct {
        Text serial, persistentId, uuid, identity;
    } cases[] = {
        {"S1", "P1", "U1", "serial:S1"},
        {"S1", {}, {}, "serial:S1"},
        {{}, "P1", "U1", "persistent:P1"},
        {"", "P1", "U1", "persistent:P1"},
        {"", "P1", "", "persistent:P1"},
        {{}, {}, "U1", "uuid:U1"},
        {"", "", "U1", "uuid:U1"},
        {{}, {}, {}, {}},
        {"", "", "", {}},
        {" ", {}, {}, "serial: "},
    };
    for (const auto& [serial, persistentId, uuid, identity] : cases) {
        EXPECT_EQ(
            cameraWith({.name = {}, .serial = serial, .persistentId = persistentId, .uuid = uuid})
                ->identity(),
            identity);
    }
}

TEST(ImageCaptureCamera, IsKnownAsWhatItWasBeforeItToldItsSerialNumber) {
    const auto camera = cameraWith({.name = {}, .serial = "S", .persistentId = "P", .uuid = "U"});
    EXPECT_TRUE(camera->isKnownAs("serial:S"));
    EXPECT_TRUE(camera->isKnownAs("persistent:P"));
    for (const char* other : {"serial:P", "persistent:S", "persistent:", "uuid:U", ""})
        EXPECT_FALSE(camera->isKnownAs(other)) << other;
    const auto bare = cameraWith({.name = {}, .serial = "S", .persistentId = "", .uuid = {}});
    EXPECT_FALSE(bare->isKnownAs("persistent:"));
}

TEST(ImageCaptureCamera, HasTheDevicesUuidAsItsId) {
    EXPECT_EQ(cameraWith({.name = {}, .serial = "S", .persistentId = "P", .uuid = "U"})->id(), "U");
}

TEST(ImageCaptureCamera, MakesUpALastingUuidWhereTheDeviceHasNone) {
    std::set<std::string> ids;
    for (const Text& uuid : {Text(), Text("")}) {
        for (int i = 0; i < 50; ++i) {
            const auto camera =
                cameraWith({.name = {}, .serial = "S", .persistentId = {}, .uuid = uuid});
            const std::string id = camera->id();
            EXPECT_TRUE(isRandomUuid(id)) << id;
            EXPECT_EQ(camera->id(), id);
            EXPECT_TRUE(ids.insert(id).second) << id;
        }
    }
}

TEST(ImageCaptureCamera, NeverTakesTheMadeUpUuidForItsIdentity) {
    const auto camera = cameraWith({});
    EXPECT_FALSE(camera->id().empty());
    EXPECT_EQ(camera->identity(), std::nullopt);
}

TEST(ImageCaptureCamera, HasTheDevicesNameIfAny) {
    const auto device = std::make_shared<FakeNativeDevice>();
    const auto camera = ImageCaptureCamera::make(device);
    EXPECT_EQ(camera->name(), std::nullopt);
    device->known.name = "";
    EXPECT_EQ(camera->name(), std::nullopt);
    device->known.name = "Kamera 1";
    EXPECT_EQ(camera->name(), "Kamera 1");
}

TEST(ImageCaptureCamera, ListsEveryFileWithItsSidecarsRightBehind) {
    const auto device = std::make_shared<FakeNativeDevice>();
    const auto photo = file("IMG_2.CR3");
    photo->companions = {file("IMG_2.XMP"), file("IMG_2.WAV")};
    device->items = {{photo}, {file("IMG_1.JPG")}, {file(std::nullopt)}};
    EXPECT_EQ(names(*ImageCaptureCamera::make(device)),
              (std::vector<Text>{"IMG_2.CR3", "IMG_2.XMP", "IMG_2.WAV", "IMG_1.JPG", {}}));
}

TEST(ImageCaptureCamera, LeavesOutWhatIsNoFile) {
    const auto device = std::make_shared<FakeNativeDevice>();
    const auto photo = file("IMG_1.JPG");
    photo->companions = {nullptr, file("IMG_1.XMP")};
    device->items = {{nullptr}, {photo}, {nullptr}};
    EXPECT_EQ(names(*ImageCaptureCamera::make(device)),
              (std::vector<Text>{"IMG_1.JPG", "IMG_1.XMP"}));
}

TEST(ImageCaptureCamera, ReadsTheCatalogueAfreshEachTime) {
    const auto device = std::make_shared<FakeNativeDevice>();
    const auto camera = ImageCaptureCamera::make(device);
    EXPECT_TRUE(camera->files().empty());
    device->items = {{file("IMG_1.JPG")}};
    EXPECT_EQ(names(*camera), std::vector<Text>{"IMG_1.JPG"});
    device->items.clear();
    EXPECT_TRUE(camera->files().empty());
}

class ImageCaptureCameraSession : public testing::Test {
protected:
    std::shared_ptr<FakeNativeDevice> device = std::make_shared<FakeNativeDevice>();
    std::shared_ptr<ImageCaptureCamera> camera = ImageCaptureCamera::make(device);
    std::shared_ptr<RecordingCameraDelegate> delegate = std::make_shared<RecordingCameraDelegate>();
};

TEST_F(ImageCaptureCameraSession, ListensToTheDeviceFromTheStart) {
    EXPECT_EQ(device->sink.lock(), camera);
}

TEST_F(ImageCaptureCameraSession, OpensAndClosesTheDevicesSession) {
    camera->openSession();
    EXPECT_EQ(device->opened, 1);
    EXPECT_EQ(device->closed, 0);
    camera->closeSession();
    EXPECT_EQ(device->opened, 1);
    EXPECT_EQ(device->closed, 1);
}

TEST_F(ImageCaptureCameraSession, PassesOnWhatTheImportNeeds) {
    camera->setDelegate(delegate);
    device->sink.lock()->sessionOpened(std::nullopt);
    device->sink.lock()->catalogGrows(7);
    device->sink.lock()->catalogReady();
    device->sink.lock()->itemsAdded();
    device->sink.lock()->itemsRemoved();
    EXPECT_EQ(delegate->events,
              (std::vector<std::string>{"opened", "grows to 7", "ready", "changed", "changed"}));
    EXPECT_EQ(delegate->senders, std::vector<Camera*>(5, camera.get()));
}

TEST_F(ImageCaptureCameraSession, PassesOnWhyItCouldNotBeOpened) {
    camera->setDelegate(delegate);
    device->sink.lock()->sessionOpened(Error{"Die Kamera ist belegt."});
    EXPECT_EQ(delegate->events, std::vector<std::string>{"opened: Die Kamera ist belegt."});
}

TEST_F(ImageCaptureCameraSession, DropsEventsWhenNobodyListens) {
    const auto everything = [this] {
        device->sink.lock()->sessionOpened(std::nullopt);
        device->sink.lock()->catalogGrows(7);
        device->sink.lock()->catalogReady();
        device->sink.lock()->itemsAdded();
        device->sink.lock()->itemsRemoved();
    };
    EXPECT_NO_THROW(everything());
    camera->setDelegate(delegate);
    const std::weak_ptr<RecordingCameraDelegate> gone = std::exchange(delegate, nullptr);
    ASSERT_TRUE(gone.expired());
    EXPECT_NO_THROW(everything());
}

}  // namespace
}  // namespace bildkurier
