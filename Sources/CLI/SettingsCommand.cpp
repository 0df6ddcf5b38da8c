// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SettingsCommand.h"

#include "FileName.h"
#include "LocalDay.h"
#include "SettingsKey.h"
#include "SftpUrl.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

namespace {

using Json = nlohmann::ordered_json;

/// One choice. `write` answers what is wrong with a value, if anything.
struct Setting {
    std::string key;
    std::function<Json(const SettingsStore&)> read;
    std::function<std::string(SettingsStore&, const std::string&)> write;
};

Setting text(const char* key, std::string (SettingsStore::*read)() const,
             void (SettingsStore::*write)(const std::string&)) {
    return {key, [read](const SettingsStore& settings) { return Json((settings.*read)()); },
            [write](SettingsStore& settings, const std::string& value) {
                (settings.*write)(value);
                return std::string();
            }};
}

/// Text whose spaces and tabs at both ends do not count.
Setting trimmedText(const char* key, std::string (SettingsStore::*read)() const,
                    void (SettingsStore::*write)(const std::string&)) {
    Setting setting = text(key, read, write);
    setting.write = [write = std::move(setting.write)](SettingsStore& settings,
                                                       const std::string& value) {
        return write(settings, withoutBlanks(value));
    };
    return setting;
}

Setting optionalText(const char* key, std::optional<std::string> (SettingsStore::*read)() const,
                     void (SettingsStore::*write)(const std::string&),
                     std::function<std::string(const std::string&)> complaint) {
    return {key,
            [read](const SettingsStore& settings) {
                const auto value = (settings.*read)();
                return value ? Json(*value) : Json(nullptr);
            },
            [write, complaint = std::move(complaint)](SettingsStore& settings,
                                                      const std::string& value) {
                std::string wrong = complaint(value);
                if (wrong.empty()) (settings.*write)(value);
                return wrong;
            }};
}

Setting boolean(const char* key, bool (SettingsStore::*read)() const,
                void (SettingsStore::*write)(bool)) {
    return {key, [read](const SettingsStore& settings) { return Json((settings.*read)()); },
            [write](SettingsStore& settings, const std::string& value) -> std::string {
                if (value != "true" && value != "false")
                    return fmt::format("„{}“ ist weder true noch false.", displayText(value));
                (settings.*write)(value == "true");
                return {};
            }};
}

Setting kind() {
    return {SettingsKey::destinationKind,
            [](const SettingsStore& settings) {
                return Json(std::string(rawValue(settings.destinationKind())));
            },
            [](SettingsStore& settings, const std::string& value) -> std::string {
                const auto wanted = destinationKind(value);
                if (!wanted)
                    return fmt::format("„{}“ ist weder folder noch sftp.", displayText(value));
                settings.setDestinationKind(*wanted);
                return {};
            }};
}

/// Without "." and "..", and without a slash at the end.
std::optional<std::string> wholePath(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    auto whole = fs::absolute(path, error);
    if (path.empty() || error) return std::nullopt;
    // What ".." means after a link only the file system knows.
    if (std::ranges::find(whole, "..") != whole.end()) whole = fs::weakly_canonical(whole, error);
    if (error) return std::nullopt;
    whole = whole.lexically_normal();
    return (whole.has_filename() ? whole : whole.parent_path()).string();
}

Setting destination(FolderAccess& access) {
    return {SettingsKey::destination,
            [](const SettingsStore& settings) { return Json(settings.destination().path); },
            [&access](SettingsStore& settings, const std::string& value) -> std::string {
                if (value.contains("://")) {
                    return fmt::format(
                        "„{}“ ist kein Ordner dieses Rechners. Einen Server macht "
                        "„bildkurier-cli sftp check“ zum Ziel.",
                        displayText(value));
                }
                const auto path = wholePath(value);
                if (!path) return "Der Name eines Ordners fehlt.";
                const Url folder = Url::file(*path);
                access.remember(folder);
                settings.setDestination(folder);
                settings.setDestinationKind(DestinationKind::folder);
                return {};
            }};
}

std::string noDay(const std::string& value) {
    if (startOfLocalDay(value)) return {};
    return fmt::format("„{}“ ist kein Tag wie 2024-05-09.", displayText(value));
}

std::vector<Setting> allSettings(FolderAccess& access) {
    using Store = SettingsStore;
    const auto anything = [](const std::string&) { return std::string(); };
    return {
        destination(access),
        kind(),
        trimmedText(SettingsKey::sftpUser, &Store::sftpUser, &Store::setSftpUser),
        trimmedText(SettingsKey::sftpHost, &Store::sftpHost, &Store::setSftpHost),
        trimmedText(SettingsKey::sftpPath, &Store::sftpPath, &Store::setSftpPath),
        boolean(SettingsKey::byDate, &Store::byDate, &Store::setByDate),
        boolean(SettingsKey::byType, &Store::byType, &Store::setByType),
        boolean(SettingsKey::useFromDate, &Store::useFromDate, &Store::setUseFromDate),
        optionalText(SettingsKey::fromDay, &Store::fromDay, &Store::setFromDay, noDay),
        boolean(SettingsKey::autoImportEnabled, &Store::autoImportEnabled,
                &Store::setAutoImportEnabled),
        optionalText(SettingsKey::autoImportCameraIdentity, &Store::autoImportCameraIdentity,
                     &Store::setAutoImportCameraIdentity, anything),
        optionalText(SettingsKey::autoImportCameraName, &Store::autoImportCameraName,
                     &Store::setAutoImportCameraName, anything),
    };
}

std::string shown(const Json& value) {
    if (value.is_null()) return {};
    return value.is_string() ? displayText(value.get<std::string>()) : value.dump();
}

void print(const std::string& line) { std::fprintf(stdout, "%s\n", line.c_str()); }

void show(const std::vector<Setting>& settings, const SettingsStore& store, bool json) {
    Json all = Json::object();
    for (const Setting& setting : settings) {
        const Json value = setting.read(store);
        if (json) {
            all[setting.key] = value;
        } else {
            print(fmt::format("{} = {}", setting.key, shown(value)));
        }
    }
    if (json) print(all.dump(-1, ' ', false, Json::error_handler_t::replace));
}

}  // namespace

ExitStatus runSettings(const CommandLine& commandLine, SettingsStore& settings,
                       FolderAccess& folderAccess) {
    const auto all = allSettings(folderAccess);
    if (!commandLine.key) {
        show(all, settings, commandLine.json);
        return ExitStatus::success;
    }
    const auto setting = std::ranges::find(all, *commandLine.key, &Setting::key);
    std::string wrong;
    if (setting == all.end()) {
        wrong = fmt::format("Eine Einstellung „{}“ gibt es nicht.", displayText(*commandLine.key));
    } else if (commandLine.value) {
        wrong = setting->write(settings, *commandLine.value);
    } else {
        show({*setting}, settings, commandLine.json);
    }
    if (wrong.empty()) return ExitStatus::success;
    std::fprintf(stderr, "%s\n", wrong.c_str());
    return ExitStatus::usage;
}

}  // namespace bildkurier
