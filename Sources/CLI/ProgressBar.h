// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ImportRunner.h"
#include "SpeedMeter.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace bildkurier {

/// One line of a running import, "[██████░░░░] 62 %  12/30 Dateien  1,2 GB von 1,9 GB
/// 38,5 MB/s  noch 0:18", with as much of it as fits into `columns`. `bytes` in all.
std::string progressLine(const ImportRunner::Progress& progress, std::int64_t bytes,
                         const SpeedMeter::Reading& speed, std::size_t columns);

/// Shows it at the bottom of a terminal; does nothing where standard error is none.
class ProgressBar {
public:
    ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    void begin(std::int64_t bytes);
    /// Never falls back until the next `begin`.
    void progress(const ImportRunner::Progress& progress);
    void draw(const SpeedMeter::Reading& speed);
    /// With the speed that it was last drawn with.
    void redraw();
    /// Answers whether it stood there.
    bool erase();

private:
    bool onTerminal_;
    bool shown_ = false;
    std::int64_t bytes_ = 0;
    std::int64_t loaded_ = 0;  ///< at most, since it began
    ImportRunner::Progress progress_;
    SpeedMeter::Reading speed_;
};

}  // namespace bildkurier
