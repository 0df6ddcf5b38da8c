// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace bildkurier {

/// A virtual camera that is plugged in: a folder as sysfs has one for a USB device, with a file
/// "virtual-camera" that says line by line what the camera is like:
///
///     store1=FOLDER, store2=FOLDER   its cards
///     manufacturer=, model=, version=, serial=
///     extension=N                    vendor extension, 11 is Canon's; 10, Nikon's, tells sizes
///                                    beyond 32 bits
///     partial=1                      files can be read in pieces
///     marks_new=1                    as a Canon, it marks all files as new until it is told that
///                                    they are not
///     rate=N                         bytes a second; none: as fast as can be
///     announce NAME=N                the size that it says the file NAME has
///     early NAME=N                   the size that it says the file NAME has when it is listed or
///                                    told of as new; the next thing that it tells of this file is
///                                    that it has changed, and from then on, or when it is opened
///                                    anew, it says the right one
///     comes_again NAME=1             it tells instead that the file has come
///     called NAME=OTHER              what it calls the file NAME
///     busy=N                         the first N attempts to open it fail
///     busy_after=N                   not the first, but those after N attempts
///     fault_at=N, fault=CODE         once it has sent N bytes since it was opened, it answers
///                                    with this error of libgphoto2
///     fault=hang                     and this one does not answer until the time is over
///     fault=pull                     and this one is unplugged
///     faults=N                       so many times; none: again and again
///     fault_of NAME=CODE             asked about the file or folder NAME, or for what is on the
///                                    card in the folder NAME, it answers with this code of the
///                                    protocol; or with this error of libgphoto2, after which
///                                    what was asked for comes too late
///     fault_of contents of NAME=CODE the same, asked for the file itself or a piece of it
///     faults_of=N                    so many times for each; none: again and again
///     faults_after NAME=N            not the first N times, but those after them
///     event_fault=CODE,              asked what is new, it answers with this error
///     event_faults=N                 so many times
///     other_events=N                 before it tells of files, it tells so often of other things
class Plug {
public:
    /// Those below the folder that the environment names, by their places on the bus.
    static std::vector<Plug> all();

    explicit Plug(std::filesystem::path folder);

    /// "001,011"
    std::string port() const;
    int vendor() const;
    int product() const;
    const std::filesystem::path& settingsFile() const { return settingsFile_; }

    std::string text(const std::string& name) const;
    /// -1 where it is not said.
    std::int64_t number(const std::string& name) const;

    /// Whether it is still there.
    bool isIn() const;
    /// Unplugs it: it comes to the folder "drawer" beside the bus.
    void pull() const;
    /// How often something has happened, which a file beside the settings says: "openings",
    /// "faults", "faults-of NAME", "asked NAME", "grown NAME", "event-faults", "other-events",
    /// "unmarked" and "unknown" requests.
    std::int64_t counted(const std::string& what) const;
    void count(const std::string& what) const;

private:
    std::filesystem::path counter(const std::string& what) const;
    std::string attribute(const char* name) const;

    std::filesystem::path folder_;
    std::filesystem::path settingsFile_;
    std::map<std::string, std::string> settings_;
};

}  // namespace bildkurier
