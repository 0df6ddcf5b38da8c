// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFileType.h"

#include "FileName.h"
#include "LetterCase.h"

#include <string>
#include <unordered_map>
#include <utility>

namespace bildkurier {

namespace {

using Types = std::unordered_map<std::string_view, CardFileType>;

constexpr std::string_view photos[] = {
    "jpg", "jpeg", "jpe", "heic", "heif", "hif", "avif", "jxl", "jp2", "webp", "png", "tif", "tiff",
    "gif", "bmp", "mpo", "jps", "pns", "insp",
    // raw
    "3fr", "ari", "arq", "arw", "bay", "cap", "cr2", "cr3", "crw", "cs1", "dcr", "dcs", "dng",
    "drf", "eip", "erf", "fff", "gpr", "iiq", "k25", "kc2", "kdc", "lfp", "lfr", "mdc", "mef",
    "mfw", "mos", "mrw", "nef", "nrw", "orf", "ori", "pef", "ptx", "pxn", "raf", "raw", "rw2",
    "rwl", "rwz", "sr2", "srf", "srw", "sti", "x3f"};

constexpr std::string_view videos[] = {
    "mp4",  "m4v", "mov", "qt",  "avi", "mts", "m2ts", "m2t",  "ts",   "mpg",  "mpeg",
    "mpe",  "m1v", "m2v", "mod", "tod", "vob", "3gp",  "3gpp", "3g2",  "mkv",  "mk3d",
    "webm", "wmv", "asf", "flv", "f4v", "ogv", "dv",   "dif",  "divx", "mjpg", "mjpeg",
    "insv", "360", "mxf", "crm", "r3d", "nev", "braw", "arx",  "rmf",  "rsv",  "cine"};

constexpr std::string_view videoProxies[] = {"lrv", "lrf"};

constexpr std::string_view sounds[] = {"mp3",  "m4a", "m4b",  "aac",  "flac", "ogg", "oga", "opus",
                                       "wma",  "aif", "aiff", "aifc", "caf",  "amr", "3ga", "bwf",
                                       "rf64", "w64", "wv",   "dsf",  "dff",  "ac3", "mka", "mpa"};

constexpr std::string_view voiceNotes[] = {"wav"};

constexpr std::string_view sidecars[] = {"xmp", "thm", "xml", "aae", "srt", "vtt", "ass",
                                         "bim", "rmd", "pp3", "dop", "dr4", "vrd", "nksc",
                                         "nka", "cos", "cof", "arp", "on1", "gpx", "nmea"};

const Types& types() {
    // Never destroyed, for threads that hang with their camera while the program ends.
    static const Types& all = *new const Types([] {
        Types types;
        const auto add = [&types](const auto& extensions, CardFileType type) {
            for (const std::string_view extension : extensions) types.emplace(extension, type);
        };
        add(photos, CardFileType::Photo);
        add(videos, CardFileType::Video);
        add(videoProxies, CardFileType::VideoProxy);
        add(sounds, CardFileType::Sound);
        add(voiceNotes, CardFileType::VoiceNote);
        add(sidecars, CardFileType::Sidecar);
        return types;
    }());
    return all;
}

}  // namespace

CardFileType cardFileType(std::string_view name) {
    const auto found = types().find(lowerCased(nameParts(name).extension));
    return found == types().end() ? CardFileType::Other : found->second;
}

}  // namespace bildkurier
