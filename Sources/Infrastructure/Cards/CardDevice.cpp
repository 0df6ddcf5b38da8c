// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardDevice.h"

#include "CardReader.h"
#include "RunThen.h"

#include <optional>
#include <utility>

namespace bildkurier {

CardDevice::CardDevice(MainQueue& main, Background& background,
                       std::shared_ptr<CaptureDates> captureDates,
                       std::shared_ptr<const CardPlace> place)
    : main_(main),
      background_(background),
      captureDates_(std::move(captureDates)),
      place_(std::move(place)) {}

CardDevice::~CardDevice() {
    if (session_) session_->end(CardSession::End::Closed);
}

std::vector<NativeItem> CardDevice::mediaFiles() const {
    return contents_ ? contents_->mediaFiles() : std::vector<NativeItem>();
}

std::function<bool()> CardDevice::sameFilesTest() const {
    if (!contents_) return [] { return false; };
    return [session = session_, contents = contents_] {
        const auto root = session->openRoot();
        if (!root) return false;
        const CardCatalogue now = readCard(*session, *root, nullptr);
        return !session->hasEnded() && haveSameFiles(now, contents->catalogue());
    };
}

OtherFiles CardDevice::otherFiles() const {
    return contents_ ? contents_->catalogue().others : OtherFiles();
}

void CardDevice::openSession() {
    closeSession();
    session_ = std::make_shared<CardSession>(place_);
    runThen(
        background_, main_, [session = session_] { return session->openRoot(); },
        answers_([this](Result<FileDescriptor> root) { sessionAnswered(std::move(root)); }));
}

void CardDevice::endSession(CardSession::End how) {
    answers_.renew();
    if (session_) session_->end(how);
    session_.reset();
    contents_.reset();
}

void CardDevice::sessionAnswered(Result<FileDescriptor> root) {
    std::optional<Error> error;
    if (root) {
        runThen(
            background_, main_,
            [session = session_, captureDates = captureDates_,
             opened = std::make_shared<FileDescriptor>(*std::move(root))]() mutable {
                const FileDescriptor folder = std::move(*opened);
                return readCard(*session, folder, captureDates.get());
            },
            answers_([this](CardCatalogue found) { catalogueRead(std::move(found)); }));
    } else {
        error = root.error();
        closeSession();
    }
    if (const auto sink = sink_.lock()) sink->sessionOpened(error);
}

void CardDevice::catalogueRead(CardCatalogue catalogue) {
    contents_ = std::make_shared<CardContents>(std::move(catalogue), session_, background_);
    if (const auto sink = sink_.lock()) sink->catalogReady();
}

}  // namespace bildkurier
