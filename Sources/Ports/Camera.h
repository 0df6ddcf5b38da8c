// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFile.h"
#include "OtherFiles.h"
#include "Url.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

class CameraDelegate;

/// One connected camera. Main thread.
class Camera {
public:
    virtual ~Camera() = default;

    /// Stable and unique among the attached cameras for as long as this one is attached.
    virtual std::string id() const = 0;

    /// For people; absent when the device has none.
    virtual std::optional<std::string> name() const = 0;

    /// Survives unplugging: "serial:", "persistent:" or "uuid:" and the device's own text.
    /// Absent when the device has nothing lasting.
    virtual std::optional<std::string> identity() const = 0;

    /// Whether the identity stays as it is. Some cameras can tell theirs only once no other program
    /// holds them; until then it may be that of several.
    virtual bool isIdentityFinal() const { return true; }

    /// Whether `identity` is this camera's, or was before it could tell who it is.
    virtual bool isKnownAs(const std::string& identity) const {
        return this->identity() == identity;
    }

    /// The complete catalogue, each media file directly followed by its sidecars.
    virtual std::vector<std::shared_ptr<CameraFile>> files() const = 0;

    /// What else was found while the catalogue was read. None where that cannot be known.
    virtual OtherFiles otherFiles() const { return {}; }

    virtual void setDelegate(std::weak_ptr<CameraDelegate> delegate) = 0;

    /// Answered by `CameraDelegate::cameraDidOpenSession`, later.
    virtual void openSession() = 0;

    virtual void closeSession() = 0;

    /// Tells of a folder of this computer whether the camera is one too and one of them lies in
    /// the other, so that what is on the card would count as imported. It blocks, on any thread.
    using OverlapTest = std::function<bool(const Url&)>;

    /// By default no folder does.
    virtual OverlapTest overlapTest() const {
        return [](const Url&) { return false; };
    }

    /// Tells whether the camera holds exactly what `files` answers now, as far as it can find out.
    /// It blocks, on any thread.
    using SameFilesTest = std::function<bool()>;

    /// By default it does: most cameras tell of changes by themselves.
    virtual SameFilesTest sameFilesTest() const {
        return [] { return true; };
    }
};

}  // namespace bildkurier
