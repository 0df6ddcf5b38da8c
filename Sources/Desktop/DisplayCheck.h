// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

namespace bildkurier {

/// As long as it lives, a program that finds no display for its windows ends with exit status 1
/// and says so in German, where the toolkit would abort it. To be made before the application.
class DisplayCheck {
public:
    DisplayCheck();
    DisplayCheck(const DisplayCheck&) = delete;
    DisplayCheck& operator=(const DisplayCheck&) = delete;
    ~DisplayCheck();
};

}  // namespace bildkurier
