// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "CameraDelegate.h"
#include "ScriptedFile.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// One connection of a camera, from plugging in to unplugging and, for late answers, beyond.
class ScriptedCamera final : public Camera {
public:
    using Files = std::vector<std::shared_ptr<ScriptedFile>>;

    ScriptedCamera(std::string cameraId, std::optional<std::string> cameraIdentity)
        : id_(std::move(cameraId)), identity_(std::move(cameraIdentity)) {}

    Files card;
    Files taken;         ///< all that ever were on the card
    mutable Files read;  ///< the card when it was read last
    std::weak_ptr<CameraDelegate> delegate;
    int asked = 0;     ///< sessions asked for that have no answer yet
    int answered = 0;  ///< sessions opened
    int calls = 0;     ///< of any kind
    bool closed = true;

    void add(const std::shared_ptr<ScriptedFile>& file) {
        card.push_back(file);
        taken.push_back(file);
    }
    /// The next answer to a call for a session.
    void answer(const std::optional<Error>& error) {
        --asked;
        if (!error) ++answered;
        if (const auto to = delegate.lock()) to->cameraDidOpenSession(*this, error);
    }
    void catalogReady() {
        if (const auto to = delegate.lock()) to->cameraCatalogReady(*this);
    }
    void catalogChanged() {
        if (const auto to = delegate.lock()) to->cameraCatalogChanged(*this);
    }
    /// Who it is, it cannot tell yet, only its place.
    void isOnlyKnownBy(std::string place) {
        place_ = std::move(place);
        isIdentified_ = false;
    }
    /// Now it can, if it has an identity of its own.
    void identify() { isIdentified_ = true; }
    void unplug() {
        for (const auto& file : taken) file->unplugged = true;
    }

    std::string id() const override { return id_; }
    std::optional<std::string> name() const override { return "Kamera " + id_; }
    std::optional<std::string> identity() const override {
        return isIdentified_ && identity_ ? identity_ : place_;
    }
    bool isIdentityFinal() const override { return isIdentified_; }
    bool isKnownAs(const std::string& identity) const override {
        return this->identity() == identity || place_ == identity;
    }
    std::vector<std::shared_ptr<CameraFile>> files() const override {
        read = card;
        return {card.begin(), card.end()};
    }
    void setDelegate(std::weak_ptr<CameraDelegate> to) override { delegate = std::move(to); }
    void openSession() override {
        ++calls;
        ++asked;
        closed = false;
    }
    void closeSession() override {
        ++calls;
        closed = true;
    }

private:
    std::string id_;
    std::optional<std::string> identity_;
    std::optional<std::string> place_;  ///< unless it could tell at once who it is
    bool isIdentified_ = true;
};

}  // namespace bildkurier
