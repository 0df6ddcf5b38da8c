// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

class ListingLog;

/// One camera through libgphoto2, whose answers it passes on: a negative `int` is the
/// library's error. Nothing here is meant to change the camera's own state; but of some Canons the
/// library clears the mark that a file is new once it has read it. One thread.
class GphotoCamera {
public:
    /// `cancelled` is asked often while something runs that takes long.
    explicit GphotoCamera(std::string port, std::chrono::milliseconds answerTime,
                          std::function<bool()> cancelled);
    GphotoCamera(const GphotoCamera&) = delete;
    GphotoCamera& operator=(const GphotoCamera&) = delete;
    ~GphotoCamera();

    /// Looks up what the library knows of the device, without talking to it.
    int identify();
    /// Known once it was identified; empty for a camera known by its class alone.
    const std::string& model() const { return model_; }

    int open();
    /// The same to ask it something, but not to list it; waits for no other camera.
    int openToAsk();
    /// What is asked of a closed camera fails as if the cable were disturbed, or for the reason
    /// that another program would not let it be opened.
    void close();

    /// The camera's own serial number; empty where it has none.
    std::pair<int, std::string> serial();

    /// An answer to listings: they may lack something, but the camera does answer.
    static const int incomplete;
    /// The same, because another camera takes long or hangs; asked again, this one cannot say more.
    static const int unread;

    using Listing = std::pair<int, std::vector<std::string>>;
    /// Names in a folder; "/" is the root, which holds a folder for each card. An error is also
    /// that some may be missing: those that come with it are there.
    Listing folders(const std::string& folder);
    Listing files(const std::string& folder);

    struct Info {
        std::uint64_t size = 0;        ///< bytes, as the camera says
        std::optional<Date> modified;  ///< wall clock of the camera, as local time
    };
    std::pair<int, Info> info(const std::string& folder, const std::string& name);

    /// The answer for a file that is not there.
    static const int missing;

    /// Takes bytes in order; answers false to have no more.
    using Receive = std::function<bool(std::span<const char>)>;
    /// Reads a whole file.
    int load(const std::string& folder, const std::string& name, const Receive& receive);
    /// The same piece by piece, which some files need.
    int loadInPieces(const std::string& folder, const std::string& name, std::uint64_t size,
                     const Receive& receive);

    struct NewFile {
        std::string folder;  ///< below the root
        std::string name;
        bool hasChanged = false;  ///< rather than come, as the camera says
    };
    /// Tells of a file that was added or has changed meanwhile, waiting for that at most
    /// `patience`. What else the camera tells is dropped.
    std::pair<int, std::optional<NewFile>> newFile(std::chrono::milliseconds patience);

    /// Called while files are listed, for each object that the camera is asked to describe.
    std::function<void()> onObjectListed = [] {};

private:
    struct Library;
    class Call;
    struct Handles;
    struct Transfer;

    bool isOpen() const;
    int open(ListingLog* log);
    int tryToOpen(ListingLog* log);
    template <class NamesCall>
    Listing list(NamesCall call, const std::string& folder, ListingLog& log);

    std::string port_;
    std::chrono::milliseconds answerTime_;
    std::function<bool()> cancelled_;
    int closed_;               ///< what is answered while it is closed
    bool lacksCards_ = false;  ///< it may, since it was opened
    bool stopped_ = false;     ///< the running transfer wants no more bytes
    std::string model_;
    std::unique_ptr<Handles> handles_;
};

}  // namespace bildkurier
