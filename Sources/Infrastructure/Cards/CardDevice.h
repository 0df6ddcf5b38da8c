// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "CaptureDates.h"
#include "CardContents.h"
#include "CardPlace.h"
#include "CardSession.h"
#include "Guard.h"
#include "MainQueue.h"
#include "NativeCamera.h"

#include <functional>
#include <memory>

namespace bildkurier {

/// A card, or another folder, as a device. Main thread.
class CardDevice final : public NativeDevice {
public:
    /// `main` and `background` must be there whenever it is used. `captureDates` may be null.
    CardDevice(MainQueue& main, Background& background, std::shared_ptr<CaptureDates> captureDates,
               std::shared_ptr<const CardPlace> place);
    CardDevice(const CardDevice&) = delete;
    CardDevice& operator=(const CardDevice&) = delete;
    ~CardDevice() override;

    const std::shared_ptr<const CardPlace>& place() const { return place_; }

    bool isCamera() const override { return true; }
    DeviceFacts facts() const override { return place_->facts; }
    std::vector<NativeItem> mediaFiles() const override;
    std::function<bool()> sameFilesTest() const override;
    OtherFiles otherFiles() const override;
    void setSink(std::weak_ptr<DeviceSink> sink) override { sink_ = std::move(sink); }
    void openSession() override;
    /// Downloads under way fail soon after.
    void closeSession() override { endSession(CardSession::End::Closed); }
    /// The same when the card is there no more, which is what downloads then say.
    void cardRemoved() { endSession(CardSession::End::CardRemoved); }

private:
    void endSession(CardSession::End how);
    void sessionAnswered(Result<FileDescriptor> root);
    void catalogueRead(CardCatalogue catalogue);

    MainQueue& main_;
    Background& background_;
    std::shared_ptr<CaptureDates> captureDates_;
    std::shared_ptr<const CardPlace> place_;
    std::weak_ptr<DeviceSink> sink_;
    std::shared_ptr<CardSession> session_;  ///< null while closed
    std::shared_ptr<const CardContents> contents_;
    Guard answers_;  ///< of this session
};

}  // namespace bildkurier
