// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>
#include <vector>

namespace bildkurier {

/// Names of files that mean something to the client, to shells or to nobody.
inline const std::vector<std::string> oddNames{"a b  c   d.jpg",
                                               " leading",
                                               "trailing  ",
                                               "q\"uo\"te",
                                               "back\\slash",
                                               "end\\",
                                               "[x]",
                                               "a[b-c]d",
                                               "*",
                                               "**.jpg",
                                               "?",
                                               "a\\*b",
                                               "]",
                                               "Übung ä",
                                               "日本 📷",
                                               "-rf",
                                               "-",
                                               "#no comment",
                                               "!touch x",
                                               "'single'",
                                               "$HOME",
                                               "~",
                                               "\\303\\274",
                                               "{a,b}",
                                               "{",
                                               "{}",
                                               "100%",
                                               "a;b&c|d",
                                               "x.part"};

}  // namespace bildkurier
