// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbImportTest.h"

#include "AutoImport.h"
#include "FakeFolderAccess.h"
#include "FakeRunLock.h"
#include "LocalFileStore.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <random>

namespace bildkurier {

namespace fs = std::filesystem;

UsbImportTest::UsbImportTest() {
    using Milliseconds = UsbTiming::Milliseconds;
    timing.scan = Milliseconds(2);
    timing.vanishing = Milliseconds(50);
    timing.busy.fill(Milliseconds(1));
    timing.telling = Milliseconds(1);
    timing.events = Milliseconds(10);
    // A thread left behind would read the environment while the next test changes it.
    timing.ending = Milliseconds(60'000);
    settings->storedDestination = Url::file(destination);
    settings->storedByType = false;
}

UsbImportTest::~UsbImportTest() { stop(); }

void UsbImportTest::add(const std::string& path, std::string_view contents, int day) const {
    const std::string file = folder.write(path, contents);
    const std::chrono::sys_seconds taken(std::chrono::sys_days(std::chrono::year(2024) / 7 / day) +
                                         std::chrono::hours(12));
    fs::last_write_time(file, std::chrono::file_clock::from_sys(taken));
}

void UsbImportTest::addLarge(const std::string& path, std::size_t size, int day) const {
    // A prime, so that no piece of a file is like the piece before it.
    constexpr std::size_t period = 997;
    std::minstd_rand random(static_cast<unsigned>(std::hash<std::string>()(path)));
    std::string bytes(period, '\0');
    std::ranges::generate(bytes, [&random] { return static_cast<char>(random() >> 8U); });
    while (bytes.size() < size) bytes += bytes;
    add(path, std::string_view(bytes).substr(0, size), day);
}

VirtualBus::Device UsbImportTest::camera(const std::string& serial) const {
    return {.serial = serial,
            .settings = {{"store1", card}, {"manufacturer", "Werk"}, {"model", "Testkamera"}}};
}

void UsbImportTest::start() {
    pool.emplace();
    const auto store = std::make_shared<LocalFileStore>();
    const auto browser = std::make_shared<ImageCaptureBrowser>(std::make_unique<UsbCameras>(
        loop, UsbCameras::Options{.bus = usb.bus(), .timing = timing, .release = release}));
    model = std::make_shared<ImportModel>(
        ImportModel::Collaborators{.browser = browser,
                                   .fileStore = store,
                                   .settings = settings,
                                   .folderPicker = nullptr,
                                   .runner = std::make_unique<ImportRunner>(store, loop, *pool),
                                   .autoImport = std::make_shared<AutoImport>(settings, store),
                                   .sleepBlocker = sleepBlocker,
                                   .folderAccess = std::make_shared<FakeFolderAccess>(),
                                   .runLock = std::make_shared<FakeRunLock>(),
                                   .keyring = nullptr,
                                   .workspace = nullptr,
                                   .homeFolder = folder.path()},
        loop, *pool);
    recorder_ = model->observe([this] {
        if (statuses.empty() || statuses.back() != model->status())
            statuses.push_back(model->status());
    });
    browser->start(model);
}

void UsbImportTest::stop() {
    recorder_.reset();
    model.reset();
    pool.reset();
}

void UsbImportTest::runUntil(const std::function<bool()>& reached) {
    constexpr Duration patience{120};
    bool isLate = false;
    const Handle observation = model->observe([&] {
        if (reached()) loop.stop();
    });
    const Handle deadline = loop.after(patience, [&] {
        isLate = true;
        loop.stop();
    });
    while (!reached() && !isLate) loop.run();
    ASSERT_FALSE(isLate) << model->status() << testing::PrintToString(log());
}

void UsbImportTest::runUntilReady() {
    runUntil([this] { return model->phase() == Phase::ready; });
}

void UsbImportTest::importAll() {
    runUntilReady();
    model->startImport();
    runUntil([this] { return model->phase() == Phase::ready; });
}

std::vector<std::string> UsbImportTest::log() const {
    return {model->log().begin(), model->log().end()};
}

bool UsbImportTest::hasLogged(std::string_view text) const {
    return std::ranges::any_of(model->log(), [text](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

Tree UsbImportTest::filesOf(const std::string& folder) {
    Tree files;
    for (const auto& [path, contents] : tree(folder)) {
        if (path.ends_with('/')) continue;
        const bool isNew = files.emplace(path.substr(path.rfind('/') + 1), contents).second;
        EXPECT_TRUE(isNew) << path << " is there twice";
    }
    return files;
}

}  // namespace bildkurier
