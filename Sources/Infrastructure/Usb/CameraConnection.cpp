// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraConnection.h"

#include "UsbIdentity.h"

#include <fmt/format.h>
#include <unistd.h>

#include <utility>

namespace bildkurier {

CameraConnection::CameraConnection(UsbPlace place, UsbBus bus, UsbTiming timing, Release release)
    : place_(std::move(place)),
      bus_(std::move(bus)),
      timing_(timing),
      release_(std::move(release)),
      camera_(place_.port, timing.answer, [this] { return session_ && session_->hasEnded(); }) {}

std::string CameraConnection::name() const {
    return camera_.model().empty() ? factsAtUsb(place_).name.value_or("") : camera_.model();
}

GphotoCamera& CameraConnection::cameraInStep() {
    if (!isInStep_) openOnce();
    return camera_;
}

CameraFault CameraConnection::fault(int code) {
    const CameraFault fault = cameraFault(code);
    if (fault == CameraFault::Transfer || fault == CameraFault::Missing ||
        fault == CameraFault::Cancelled || fault == CameraFault::Other) {
        isInStep_ = false;
    }
    if (fault != CameraFault::Transfer) return fault;
    constexpr UsbTiming::Milliseconds step{20};
    for (UsbTiming::Milliseconds waited{}; bus_.isThere(place_); waited += step) {
        if (waited >= timing_.vanishing || !session_ || session_->endsWithin(step)) return fault;
    }
    return CameraFault::Gone;
}

bool CameraConnection::waitWhileBusy(std::size_t tries) const {
    return tries < timing_.busy.size() && session_ && !session_->endsWithin(timing_.busy[tries]);
}

CameraFault CameraConnection::opened(int answer) {
    ++openings_;
    answer_ = answer;
    isInStep_ = cameraFault(answer) == CameraFault::None;
    return fault(answer);
}

CameraFault CameraConnection::openOnce() { return opened(camera_.open()); }

Result<> CameraConnection::open(std::shared_ptr<const UsbSession> session) {
    session_ = std::move(session);
    CameraFault fault = openOnce();
    for (const auto wait : timing_.busy) {
        if (fault != CameraFault::Busy) break;
        if (session_->endsWithin(wait)) return std::unexpected(session_->endReason());
        fault = openOnce();
    }
    if (fault == CameraFault::Busy) {
        release_(place_, *session_);
        fault = openOnce();
        if (fault == CameraFault::Busy && waitWhileBusy(0)) fault = openOnce();
    }
    if (session_->hasEnded()) return std::unexpected(session_->endReason());
    if (fault == CameraFault::None) return {};
    return std::unexpected(openError(fault, answer_));
}

bool CameraConnection::openIfFree() { return opened(camera_.openToAsk()) == CameraFault::None; }

void CameraConnection::close() {
    camera_.close();
    isInStep_ = true;
    session_.reset();
}

Error CameraConnection::openError(CameraFault fault, int code) const {
    const bool mayUseIt =
        ::access(place_.node.c_str(), F_OK) != 0 || ::access(place_.node.c_str(), R_OK | W_OK) == 0;
    switch (fault) {
        case CameraFault::Gone:
            return {"Die Kamera wurde getrennt"};
        case CameraFault::Busy:
            return {fmt::format("Ein anderes Programm gibt die Kamera {} nicht frei", name())};
        case CameraFault::Unsupported:
            return {fmt::format("Die Kamera {} ist libgphoto2 nicht bekannt", name())};
        default:
            break;
    }
    if (!mayUseIt) {
        return {
            fmt::format("Keine Berechtigung für die Kamera {} (Abhilfe: die udev-Regeln des "
                        "Pakets libgphoto2-6 installieren, selbst am Rechner angemeldet sein "
                        "und die Kamera neu anstecken)",
                        name())};
    }
    return {fmt::format("Die Kamera {} antwortet nicht (Fehler {})", name(), code)};
}

}  // namespace bildkurier
