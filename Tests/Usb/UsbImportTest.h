// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "EventLoop.h"
#include "FakeSleepBlocker.h"
#include "ImageCaptureBrowser.h"
#include "ImportModel.h"
#include "MemorySettings.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"
#include "ThreadPool.h"
#include "Tree.h"
#include "UsbCameras.h"
#include "VirtualBus.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// A model as a program has it, with virtual cameras at its USB and a folder for destination.
class UsbImportTest : public testing::Test {
protected:
    using Phase = ImportModel::Phase;

    UsbImportTest();
    ~UsbImportTest() override;

    /// Puts a file on a card, taken on that day of July 2024.
    void add(const std::string& path, std::string_view contents, int day = 1) const;
    /// The same with `size` bytes that are others for every name.
    void addLarge(const std::string& path, std::size_t size, int day = 1) const;

    /// A camera with `card`, and that serial number.
    VirtualBus::Device camera(const std::string& serial = "S1001") const;

    /// Begins to look for cameras.
    void start();
    /// Lets everything go, as a program does that ends.
    void stop();
    /// Runs until this is so; it is asked after every change of the model. The test has failed
    /// when that does not come about.
    void runUntil(const std::function<bool()>& reached);
    void runUntilReady();
    /// Imports all that is missing, from the moment in which a camera is found.
    void importAll();
    /// Lines of the log.
    std::vector<std::string> log() const;
    bool hasLogged(std::string_view text) const;

    /// The files of a card, by their own names alone.
    static Tree filesOf(const std::string& folder);
    /// The destination's, each of which must be there once and whole.
    Tree imported() const { return filesOf(destination); }

    VirtualBus usb;
    const TemporaryFolder folder;
    const std::string card = folder.makeFolder("card");
    const std::string destination = folder.makeFolder("destination");
    UsbTiming timing;
    CameraConnection::Release release = [](const UsbPlace&, const UsbSession&) {};
    std::shared_ptr<MemorySettings> settings = std::make_shared<MemorySettings>();
    std::shared_ptr<FakeSleepBlocker> sleepBlocker = std::make_shared<FakeSleepBlocker>();
    EventLoop loop;
    std::optional<ThreadPool> pool;
    std::shared_ptr<ImportModel> model;
    std::vector<std::string> statuses;  ///< each that showed

private:
    Handle recorder_;
};

}  // namespace bildkurier
