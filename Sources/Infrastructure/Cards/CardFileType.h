// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <string_view>

namespace bildkurier {

/// What a file on a card is to an import, going by its extension.
enum class CardFileType : std::uint8_t {
    Other,       ///< the camera's own bookkeeping and all else: not imported
    Photo,       ///< processed or raw
    Video,
    VideoProxy,  ///< a small copy of a video next to it; a video where there is none
    Sound,
    VoiceNote,   ///< a comment on the photo or video next to it; a sound where there is none
    Sidecar,     ///< data on the photo, video or sound next to it; nothing on its own
};

CardFileType cardFileType(std::string_view name);

}  // namespace bildkurier
