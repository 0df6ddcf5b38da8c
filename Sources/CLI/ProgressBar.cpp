// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgressBar.h"

#include "ByteSum.h"
#include "Formatting.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

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

std::size_t columnsOf(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::size_t terminalColumns() {
    constexpr std::size_t usual = 80;
    winsize size{};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usual;
}

std::string bar(double share) {
    const int filled = static_cast<int>(share * cells);
    std::string bar;
    for (int cell = 0; cell < cells; ++cell) bar += cell < filled ? "█" : "░";
    return "[" + bar + "] ";
}

}  // namespace

std::string progressLine(const ImportRunner::Progress& progress, std::int64_t bytes,
                         const SpeedMeter::Reading& speed, std::size_t columns) {
    const std::int64_t loaded = std::clamp<std::int64_t>(
        byteSum(progress.bytesDone, progress.currentBytes), 0, std::max<std::int64_t>(bytes, 0));
    const double share = bytes > 0 ? static_cast<double>(loaded) / static_cast<double>(bytes) : 0;
    std::string line = fmt::format("{} %", static_cast<int>(share * 100));
    for (const std::string& part :
         {fmt::format("{}/{} Dateien", progress.done + progress.failed, progress.total),
          fmt::format("{} von {}", formatBytes(loaded), formatBytes(bytes)),
          formatSpeed(speed.current), "noch " + timeLeft(bytes - loaded, speed.average)}) {
        if (columnsOf(line) + 2 + columnsOf(part) <= columns) line += "  " + part;
    }
    const std::string front = bar(share);
    return columnsOf(front) + columnsOf(line) <= columns ? front + line : line;
}

ProgressBar::ProgressBar() : onTerminal_(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() { erase(); }

void ProgressBar::begin(std::int64_t bytes) {
    bytes_ = bytes;
    loaded_ = 0;
    progress_ = {};
}

void ProgressBar::progress(const ImportRunner::Progress& progress) {
    // While a file is moved into place, its bytes are not among those in flight any more, and not
    // among the finished ones yet.
    loaded_ = std::max(loaded_, byteSum(progress.bytesDone, progress.currentBytes));
    progress_ = progress;
    progress_.currentBytes = loaded_ - progress.bytesDone;
}

void ProgressBar::draw(const SpeedMeter::Reading& speed) {
    speed_ = speed;
    redraw();
}

void ProgressBar::redraw() {
    if (!onTerminal_) return;
    std::fprintf(stderr, "\r\x1b[K%s",
                 progressLine(progress_, bytes_, speed_, terminalColumns() - 1).c_str());
    shown_ = true;
}

bool ProgressBar::erase() {
    if (!shown_) return false;
    std::fputs("\r\x1b[K", stderr);
    shown_ = false;
    return true;
}

}  // namespace bildkurier
