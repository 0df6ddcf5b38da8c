// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "OtherFiles.h"
#include "PlacedFile.h"
#include "Result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The seam between the camera adapters, which hold all the rules, and what a system offers:
// mounted cards, a USB camera library, an image-capture framework. Facts are values, commands
// are virtual calls. Everything on the main thread unless it says otherwise.

namespace bildkurier {

/// What a system knows of a device. Empty texts mean the same as absent ones.
struct DeviceFacts {
    std::optional<std::string> name;
    std::optional<std::string> serial;        ///< the device's own serial number
    std::optional<std::string> persistentId;  ///< survives unplugging and replugging
    std::optional<std::string> uuid;
    std::optional<std::string> folder;  ///< of this computer, for a device that is one
    bool isComplete = true;  ///< else it may yet turn out to be another device than it seems
};

/// What a system knows of a file on a device.
struct FileFacts {
    std::optional<std::string> name;  ///< untrusted
    std::int64_t size = 0;            ///< bytes
    std::optional<Date> created;      ///< capture time from the file's metadata
    std::optional<Date> fileCreated;  ///< time stamp in the device's file system
    std::optional<Error> obstacle;    ///< why it cannot be loaded, where that is known
};

struct DownloadRequest {
    std::string directory;  ///< local path
    std::string saveAs;     ///< file name
    bool overwrite = false;
};

/// The name under which the file was written, or why it was not.
using NativeDownloadDone = std::function<void(Result<std::optional<std::string>>)>;

class NativeFile {
public:
    virtual ~NativeFile() = default;

    virtual FileFacts facts() const = 0;

    /// In the device's order.
    virtual std::vector<std::shared_ptr<NativeFile>> sidecars() const = 0;

    /// Where it can be read on this computer without a download, if it can.
    virtual std::optional<PlacedFile> place() const { return std::nullopt; }

    /// `done` is called exactly once, on any thread; not any more once the background has ended.
    virtual void download(const DownloadRequest& request, NativeDownloadDone done) = 0;
};

/// Something in a device's media list: a file, or a folder or other thing (`file` is null).
struct NativeItem {
    std::shared_ptr<NativeFile> file;
};

/// Receives a device's events.
class DeviceSink {
public:
    virtual ~DeviceSink() = default;

    virtual void sessionOpened(const std::optional<Error>& error) = 0;
    /// A catalogue that takes time has come so far. Not every system tells.
    virtual void catalogGrows(std::size_t filesSoFar) = 0;
    virtual void catalogReady() = 0;
    virtual void itemsAdded() = 0;
    virtual void itemsRemoved() = 0;
};

class NativeDevice {
public:
    virtual ~NativeDevice() = default;

    /// Whether the system takes it for a camera; scanners are not.
    virtual bool isCamera() const = 0;

    virtual DeviceFacts facts() const = 0;

    /// Media files in the device's order, without their sidecars. Empty until `catalogReady`.
    virtual std::vector<NativeItem> mediaFiles() const = 0;

    /// What else is on the device. Not every system tells.
    virtual OtherFiles otherFiles() const { return {}; }

    virtual void setSink(std::weak_ptr<DeviceSink> sink) = 0;

    /// Tells whether the device holds exactly what `mediaFiles` answers now. It blocks, on any
    /// thread. By default it does: most devices tell of changes by themselves.
    virtual std::function<bool()> sameFilesTest() const {
        return [] { return true; };
    }

    /// Answered by `DeviceSink::sessionOpened`, never before returning.
    virtual void openSession() = 0;
    virtual void closeSession() = 0;
};

/// Receives the devices that come and go.
class BrowserSink {
public:
    virtual ~BrowserSink() = default;

    virtual void deviceAdded(std::shared_ptr<NativeDevice> device) = 0;
    /// More has become known of who a device is that was added.
    virtual void deviceIdentified(const std::shared_ptr<NativeDevice>& device) = 0;
    /// The object that was added.
    virtual void deviceRemoved(const std::shared_ptr<NativeDevice>& device) = 0;
    /// The devices attached at the start have all been reported. Once.
    virtual void attachedDevicesReported() = 0;
};

/// Discovers devices; stops when destroyed.
class NativeBrowser {
public:
    virtual ~NativeBrowser() = default;

    /// Calls the sink later, never before returning.
    virtual void start(std::weak_ptr<BrowserSink> sink) = 0;
};

}  // namespace bildkurier
