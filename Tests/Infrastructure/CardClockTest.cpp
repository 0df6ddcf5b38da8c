// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardClock.h"
#include "InTimeZone.h"
#include "SystemCallFilter.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

#include <string>

namespace bildkurier {
namespace {

using namespace std::chrono_literals;
using std::chrono::minutes;

/// Seconds since 1970 at a time of day in UTC.
std::time_t utc(std::chrono::year_month_day day, minutes time) {
    return std::chrono::sys_seconds(std::chrono::sys_days(day) + time).time_since_epoch().count();
}

/// The local wall clock at `date`.
std::string shown(const std::optional<Date>& date) {
    if (!date) return "none";
    const std::time_t seconds =
        std::chrono::floor<std::chrono::seconds>(*date).time_since_epoch().count();
    std::tm local{};
    ::localtime_r(&seconds, &local);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%F %T", &local)};
}

constexpr auto summer = std::chrono::year(2024) / 7 / 15;
constexpr auto winter = std::chrono::year(2024) / 1 / 15;

TEST(CardClock, ShowsWhatTheCamerasClockShowed) {
    const InTimeZone berlin("Europe/Berlin");
    constexpr minutes westInWinter = -60min;
    constexpr minutes westInSummer = -120min;
    const struct {
        const char* type;
        const char* options;
        minutes west;
        std::time_t modified;
        const char* shown;
    } cases[] = {
        // 23:30 on a summer's evening: the kernel takes off an hour in winter, two in summer
        {"vfat", "rw,iocharset=utf8", westInWinter, utc(summer, 22h + 30min),
         "2024-07-15 23:30:00"},
        {"vfat", "rw,iocharset=utf8", westInSummer, utc(summer, 21h + 30min),
         "2024-07-15 23:30:00"},
        {"msdos", "rw", westInWinter, utc(summer, 22h + 30min), "2024-07-15 23:30:00"},
        // the first half hour of a winter's day, read in summer
        {"vfat", "rw", westInSummer, utc(winter, -90min), "2024-01-15 00:30:00"},
        {"vfat", "rw", westInWinter, utc(winter, -30min), "2024-01-15 00:30:00"},
        // a kernel without time zone
        {"vfat", "rw", 0min, utc(summer, 23h + 30min), "2024-07-15 23:30:00"},
        // options that name a zone
        {"vfat", "rw,tz=UTC", westInWinter, utc(summer, 23h + 30min), "2024-07-15 23:30:00"},
        {"vfat", "rw,time_offset=120", westInWinter, utc(summer, 21h + 30min),
         "2024-07-15 23:30:00"},
        {"vfat", "time_offset=-300,rw", 0min, utc(summer, 28h + 30min), "2024-07-15 23:30:00"},
        {"vfat", "rw,tz=UTC,time_offset=60", 0min, utc(summer, 22h + 30min), "2024-07-15 23:30:00"},
        {"vfat", "rw,time_offset=viel", westInWinter, utc(summer, 22h + 30min),
         "2024-07-15 23:30:00"},
        {"vfat", "rw,time_offset=60min,tz=utc", westInWinter, utc(summer, 22h + 30min),
         "2024-07-15 23:30:00"},
        // an hour that the clocks here skipped or had twice is still of that day
        {"vfat", "tz=UTC", 0min, utc(std::chrono::year(2024) / 3 / 31, 2h + 30min),
         "2024-03-31 03:30:00"},
        {"vfat", "tz=UTC", 0min, utc(std::chrono::year(2024) / 10 / 27, 2h + 30min),
         "2024-10-27 02:30:00"},
        // file systems that know the zone
        {"exfat", "rw", westInWinter, utc(summer, 22h + 30min), "2024-07-16 00:30:00"},
        {"exfat", "rw,time_offset=60", westInWinter, utc(summer, 22h + 30min),
         "2024-07-16 00:30:00"},
        {"ext4", "rw,tz=UTC", westInWinter, utc(summer, 21h + 30min), "2024-07-15 23:30:00"},
        {"", "", 0min, utc(winter, 23h + 30min), "2024-01-16 00:30:00"},
        // as far as calendars go
        {"ext4", "", 0min, utc(std::chrono::year(9999) / 12 / 31, 0min), "9999-12-31 01:00:00"},
        {"ext4", "", 0min, utc(std::chrono::year(10000) / 1 / 1, 0min), "none"},
        {"vfat", "", 0min, std::numeric_limits<std::time_t>::max(), "none"},
        {"ext4", "", 0min, std::numeric_limits<std::time_t>::min(), "none"},
        {"ext4", "", 0min, -1, "1970-01-01 00:59:59"},
        {"vfat", "tz=UTC", 0min, 3599, "1970-01-01 00:59:59"},
    };
    for (const auto& [type, options, west, modified, wanted] : cases) {
        const std::timespec stamp{.tv_sec = modified, .tv_nsec = 0};
        EXPECT_EQ(shown(CardClock(type, options, west).date(stamp)), wanted)
            << type << " " << options << " " << modified;
    }
}

TEST(CardClock, KeepsTheMillisecondsOfAFileSystemThatHasThem) {
    const std::timespec stamp{.tv_sec = 10, .tv_nsec = 123'999'999};
    EXPECT_EQ(CardClock("ext4", "", 0min).date(stamp), Date(10s + 123ms));
}

/// Has the kernel answer gettimeofday(2) with that zone.
void answer(const seccomp_data& call, struct timezone zone) {
    const iovec from{.iov_base = &zone, .iov_len = sizeof zone};
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    const iovec to{.iov_base = reinterpret_cast<void*>(call.args[1]), .iov_len = sizeof zone};
    ::process_vm_writev(::getpid(), &from, 1, &to, 1, 0);
}

TEST(CardClock, AsksTheKernelForItsZone) {
    for (const minutes wanted : {-60min, 300min}) {
        minutes west{};
        const auto answered = [&](const seccomp_data& call) {
            answer(call, {.tz_minuteswest = static_cast<int>(wanted.count()), .tz_dsttime = 0});
            return doNothing;
        };
        if (!runFiltered({SYS_gettimeofday}, answered, [&] { west = kernelMinutesWest(); }))
            GTEST_SKIP() << "the kernel hands no system calls over";
        EXPECT_EQ(west, wanted);
    }
}

}  // namespace
}  // namespace bildkurier
