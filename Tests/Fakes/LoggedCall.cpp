// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LoggedCall.h"

#include <fstream>
#include <sstream>

namespace bildkurier {
namespace {

LoggedCall parsed(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream stream(line + "\t");
    for (std::string field; std::getline(stream, field, '\t');) fields.push_back(field);
    return {.number = std::stol(fields.at(0)),
            .name = fields.at(1),
            .path = fields.at(2),
            .secondPath = fields.at(3),
            .result = std::stol(fields.at(4)),
            .error = std::stoi(fields.at(5)),
            .fault = fields.at(6)};
}

}  // namespace

std::vector<LoggedCall> readCallLog(const std::string& path) {
    std::vector<LoggedCall> calls;
    std::ifstream log(path);
    for (std::string line; std::getline(log, line);) calls.push_back(parsed(line));
    return calls;
}

}  // namespace bildkurier
