// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgressBar.h"

#include "Formatting.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace bildkurier {

namespace {

constexpr int cells = 20;

std::string timeLeft(std::int64_t bytes, double speed) {
    constexpr double longest = 100.0 * 60 * 60;  // seconds
    const double seconds = speed > 0 ? static_cast<double>(bytes) / speed : longest;
    if (seconds >= longest) return "–:––";
    const auto whole = std::llround(seconds);
    const std::int64_t hours = whole / 3600;
    if (hours > 0) return fmt::format("{}:{:02}:{:02}", hours, whole / 60 % 60, whole % 60);
    return fmt::format("{}:{:02}", whole / 60, whole % 60);
}

}  // namespace

std::string progressLine(const ImportRunner::Progress& progress, std::int64_t bytes,
                         const SpeedMeter::Reading& speed) {
    const std::int64_t loaded = std::clamp<std::int64_t>(progress.bytesDone + progress.currentBytes,
                                                         0, std::max<std::int64_t>(bytes, 0));
    const double share = bytes > 0 ? static_cast<double>(loaded) / static_cast<double>(bytes) : 0;
    const int filled = static_cast<int>(share * cells);
    std::string bar;
    for (int cell = 0; cell < cells; ++cell) bar += cell < filled ? "█" : "░";
    return fmt::format("[{}] {} %  {}/{} Dateien  {} von {}  {}  noch {}", bar,
                       static_cast<int>(share * 100), progress.done + progress.failed,
                       progress.total, formatBytes(loaded), formatBytes(bytes),
                       formatSpeed(speed.current), timeLeft(bytes - loaded, speed.average));
}

ProgressBar::ProgressBar() : onTerminal_(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() { erase(); }

void ProgressBar::draw(const SpeedMeter::Reading& speed) {
    if (!onTerminal_) return;
    std::fprintf(stderr, "\r\x1b[K%s", progressLine(progress_, bytes_, speed).c_str());
    shown_ = true;
}

void ProgressBar::erase() {
    if (!shown_) return;
    std::fputs("\r\x1b[K", stderr);
    shown_ = false;
}

}  // namespace bildkurier
