// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImageCaptureCamera.h"

#include "FolderOverlap.h"
#include "ImageCaptureFile.h"

#include <fmt/format.h>

#include <cstdint>
#include <random>
#include <utility>

namespace bildkurier {

namespace {

/// A random UUID (version 4), upper case.
std::string randomUUID() {
    std::random_device random;
    const auto bits = [&random](std::uint32_t mask) {
        return static_cast<std::uint32_t>(random()) & mask;
    };
    return fmt::format("{:08X}-{:04X}-{:04X}-{:04X}-{:04X}{:08X}", bits(0xFFFFFFFF), bits(0xFFFF),
                       bits(0x0FFF) | 0x4000, bits(0x3FFF) | 0x8000, bits(0xFFFF),
                       bits(0xFFFFFFFF));
}

/// Devices answer with an empty text, too, for what they do not have.
std::optional<std::string> given(std::optional<std::string> text) {
    return text && !text->empty() ? std::move(text) : std::nullopt;
}

std::string persistentIdentity(const std::string& id) { return "persistent:" + id; }

}  // namespace

std::shared_ptr<ImageCaptureCamera> ImageCaptureCamera::make(std::shared_ptr<NativeDevice> device) {
    const std::shared_ptr<ImageCaptureCamera> camera(new ImageCaptureCamera(std::move(device)));
    camera->device_->setSink(camera);
    return camera;
}

ImageCaptureCamera::ImageCaptureCamera(std::shared_ptr<NativeDevice> device)
    : device_(std::move(device)), fallbackID_(randomUUID()) {}

std::string ImageCaptureCamera::id() const {
    return given(device_->facts().uuid).value_or(fallbackID_);
}

std::optional<std::string> ImageCaptureCamera::name() const { return given(device_->facts().name); }

std::optional<std::string> ImageCaptureCamera::identity() const {
    const DeviceFacts facts = device_->facts();
    if (const auto serial = given(facts.serial)) return "serial:" + *serial;
    if (const auto persistentId = given(facts.persistentId))
        return persistentIdentity(*persistentId);
    if (const auto uuid = given(facts.uuid)) return "uuid:" + *uuid;
    return std::nullopt;
}

bool ImageCaptureCamera::isIdentityFinal() const { return device_->facts().isComplete; }

bool ImageCaptureCamera::isKnownAs(const std::string& identity) const {
    const auto persistentId = given(device_->facts().persistentId);
    return this->identity() == identity ||
           (persistentId && persistentIdentity(*persistentId) == identity);
}

std::vector<std::shared_ptr<CameraFile>> ImageCaptureCamera::files() const {
    const std::vector<NativeItem> items = device_->mediaFiles();
    std::vector<std::shared_ptr<CameraFile>> files;
    files.reserve(items.size());
    const auto add = [&files](const std::shared_ptr<NativeFile>& file) {
        if (file) files.push_back(std::make_shared<ImageCaptureFile>(file));
    };
    for (const NativeItem& item : items) {
        if (!item.file) continue;
        add(item.file);
        for (const auto& sidecar : item.file->sidecars()) add(sidecar);
    }
    return files;
}

void ImageCaptureCamera::setDelegate(std::weak_ptr<CameraDelegate> delegate) {
    delegate_ = std::move(delegate);
}

void ImageCaptureCamera::openSession() { device_->openSession(); }

void ImageCaptureCamera::closeSession() { device_->closeSession(); }

Camera::OverlapTest ImageCaptureCamera::overlapTest() const {
    return [own = given(device_->facts().folder)](const Url& folder) {
        return own && folder.isFile() && foldersOverlap(*own, folder.path);
    };
}

void ImageCaptureCamera::sessionOpened(const std::optional<Error>& error) {
    if (const auto delegate = delegate_.lock()) delegate->cameraDidOpenSession(*this, error);
}

void ImageCaptureCamera::catalogGrows(std::size_t filesSoFar) {
    if (const auto delegate = delegate_.lock()) delegate->cameraCatalogGrows(*this, filesSoFar);
}

void ImageCaptureCamera::catalogReady() {
    if (const auto delegate = delegate_.lock()) delegate->cameraCatalogReady(*this);
}

void ImageCaptureCamera::itemsAdded() {
    if (const auto delegate = delegate_.lock()) delegate->cameraCatalogChanged(*this);
}

void ImageCaptureCamera::itemsRemoved() {
    if (const auto delegate = delegate_.lock()) delegate->cameraCatalogChanged(*this);
}

}  // namespace bildkurier
