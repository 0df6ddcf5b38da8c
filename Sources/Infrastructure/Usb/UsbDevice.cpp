// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbDevice.h"

#include <utility>

namespace bildkurier {

UsbDevice::UsbDevice(UsbPlace place, std::shared_ptr<CameraWorker> worker)
    : place_(std::move(place)), worker_(std::move(worker)) {}

UsbDevice::~UsbDevice() { end(UsbSession::End::Closed); }

std::vector<NativeItem> UsbDevice::mediaFiles() const {
    return contents_ ? contents_->mediaFiles() : std::vector<NativeItem>();
}

OtherFiles UsbDevice::otherFiles() const {
    return contents_ ? contents_->catalogue().others : OtherFiles();
}

void UsbDevice::openSession() {
    closeSession();
    session_ = std::make_shared<UsbSession>();
    worker_->open(session_, {.opened = answers_([this](const std::optional<Error>& error) {
                                 if (error) closeSession();
                                 if (const auto sink = sink_.lock()) sink->sessionOpened(error);
                             }),
                             .filesSeen = answers_([this](std::size_t files) {
                                 if (const auto sink = sink_.lock()) sink->catalogGrows(files);
                             }),
                             .listed = answers_([this](CardCatalogue catalogue) {
                                 show(std::move(catalogue));
                                 if (const auto sink = sink_.lock()) sink->catalogReady();
                             }),
                             .changed = answers_([this](CardCatalogue catalogue) {
                                 show(std::move(catalogue));
                                 if (const auto sink = sink_.lock()) sink->itemsAdded();
                             })});
}

void UsbDevice::endSession(UsbSession::End how) {
    answers_.renew();
    contents_.reset();
    const auto session = std::exchange(session_, nullptr);
    if (!session) return;
    session->end(how);
    worker_->close(session);
}

void UsbDevice::end(UsbSession::End how) {
    endSession(how);
    worker_->end();
}

void UsbDevice::show(CardCatalogue catalogue) {
    contents_ = std::make_shared<UsbContents>(std::move(catalogue), session_, worker_);
}

}  // namespace bildkurier
