// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraLoader.h"

#include <fmt/format.h>

#include <span>
#include <string>
#include <utility>

namespace bildkurier {

namespace {

/// Cameras that cannot count as far as a long movie say this. Loading such a file can end well with
/// any number of bytes; and of one that is said to be empty, the library asks for none.
bool hasKnownSize(const CardEntry& file) {
    constexpr std::int64_t beyondCounting = 0xFFFFFFFF;
    return file.size != beyondCounting && file.size != 0;
}

}  // namespace

CameraLoader::CameraLoader(CameraConnection& connection, const UsbSession& session,
                           const UsbLoad& load)
    : connection_(connection), session_(session), load_(load) {}

CameraLoader::Outcome CameraLoader::fail(Error error) {
    error_ = std::move(error);
    return Outcome::Failed;
}

CameraLoader::Outcome CameraLoader::load() {
    if (!hasKnownSize(load_.entry)) {
        return fail(
            {"Die Kamera gibt die Größe der Datei nicht an; bitte die Karte in einem "
             "Kartenleser einlesen"});
    }
    constexpr int mostTries = 3;
    std::size_t busy = 0;
    for (int tries = 1;; ++tries) {
        CameraFault fault = transfer();
        while (fault == CameraFault::Busy && connection_.waitWhileBusy(busy++)) fault = transfer();
        if (session_.hasEnded() || fault == CameraFault::Gone) return Outcome::Over;
        if (ownError_) return fail(*ownError_);
        if (fault == CameraFault::None) return Outcome::Loaded;
        const bool mayRecover = fault == CameraFault::Transfer || fault == CameraFault::Missing;
        if (!mayRecover || tries == mostTries) return fail(reason(fault));
    }
}

Error CameraLoader::reason(CameraFault fault) const {
    switch (fault) {
        case CameraFault::NotOffered:
            return {"Die Kamera gibt diese Datei nicht heraus"};
        case CameraFault::Missing:
            return {"Die Kamera hat diese Datei nicht mehr, oder gibt nichts von ihr heraus"};
        case CameraFault::Busy:
            return {"Die Kamera ist mit anderem beschäftigt"};
        default:
            return {fmt::format(
                "Die Kamera antwortet nicht, oder die Übertragung ist gestört (Fehler {})",
                answer_)};
    }
}

bool CameraLoader::createFile() {
    bool created = false;
    // The session ends before another download of this name can begin: what is made and removed
    // here is not that one's.
    session_.ifOpen(load_.request.directory, [&] {
        file_ = std::make_unique<PartialFile>();
        const auto done =
            file_->create(load_.request.directory, load_.request.saveAs, load_.request.overwrite);
        if (!done) ownError_ = done.error();
        created = done.has_value();
    });
    return created;
}

CameraFault CameraLoader::transfer() {
    if (!createFile()) return CameraFault::Cancelled;
    WriterThread writer(*file_);
    answer_ = receive(writer);
    const CameraFault fault = connection_.fault(answer_);
    if (const auto written = writer.finish(); !written) {
        ownError_ = written.error();
    } else if (fault == CameraFault::None && file_->size() != load_.entry.size) {
        ownError_ = Error{
            fmt::format("Von der Kamera kamen {} statt {} Bytes", file_->size(), load_.entry.size)};
    }
    return fault;
}

int CameraLoader::receive(WriterThread& writer) {
    const std::string folder = "/" + load_.folder;
    const auto take = [&](std::span<const char> bytes) { return append(bytes, writer); };
    received_ = 0;
    const int code = connection_.cameraInStep().load(folder, load_.entry.name, take);
    // Of a file that it heard was deleted, the library answers that all is well.
    if (cameraFault(code) == CameraFault::None && received_ == 0) return GphotoCamera::missing;
    if (cameraFault(code) != CameraFault::NotOffered || received_ != 0) return code;
    return connection_.cameraInStep().loadInPieces(
        folder, load_.entry.name, static_cast<std::uint64_t>(load_.entry.size), take);
}

bool CameraLoader::append(std::span<const char> bytes, WriterThread& writer) {
    if (std::ssize(bytes) > load_.entry.size - received_) {
        ownError_ = Error{fmt::format("Von der Kamera kamen mehr als die angegebenen {} Bytes",
                                      load_.entry.size)};
        return false;
    }
    received_ += std::ssize(bytes);
    const auto appended = writer.append(bytes);
    if (!appended) ownError_ = appended.error();
    return !ownError_ && !session_.hasEnded();
}

}  // namespace bildkurier
