// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PrivateBus.h"

#include <unistd.h>

namespace bildkurier {

namespace {

constexpr const char* busDaemon = "/usr/bin/dbus-daemon";

}  // namespace

bool PrivateBus::isInstalled() { return ::access(busDaemon, X_OK) == 0; }

PrivateBus::PrivateBus()
    : daemon_([this] {
          const std::string printing = "--print-address=" + std::to_string(printed_.writingEnd());
          const std::string listening = "--address=" + address_;
          ::execl(busDaemon, busDaemon, "--session", "--nofork", "--nopidfile", "--nosyslog",
                  printing.c_str(), listening.c_str(), nullptr);
          return false;
      }) {
    printed_.read();  // it does so once it listens
}

}  // namespace bildkurier
