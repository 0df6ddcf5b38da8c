// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SettingsCommand.h"

#include "FileName.h"
#include "LocalDay.h"
#include "ServerName.h"
#include "ServersFolder.h"
#include "SettingsKey.h"
#include "SftpUrl.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

using Json = nlohmann::ordered_json;

/// An import that somebody or something else starts must not leave out what a period, chosen in
/// the window one day, does.
constexpr auto windowOnlyNote =
    "# useFromDate und fromDay gelten nur im Fenster; plan und import nehmen --since, watch lädt "
    "alles.";

constexpr auto nobodyTrustedNote =
    "# Noch ist keine Kamera vertraut; das macht der Schalter im Fenster oder watch --trust.";

/// Why a value is not taken.
struct Refusal {
    ExitStatus status;
    std::string message;
};

using Written = std::expected<void, Refusal>;

std::unexpected<Refusal> noSuchValue(std::string message) {
    return std::unexpected(Refusal{ExitStatus::usage, std::move(message)});
}

/// One choice.
struct Setting {
    std::string key;
    std::function<Json(const SettingsStore&)> read;
    std::function<Written(SettingsStore&, const std::string&)> write;
};

Setting text(const char* key, std::string (SettingsStore::*read)() const,
             void (SettingsStore::*write)(const std::string&)) {
    return {key, [read](const SettingsStore& settings) { return Json((settings.*read)()); },
            [write](SettingsStore& settings, const std::string& value) {
                (settings.*write)(value);
                return Written();
            }};
}

/// A part of a server's address, whose spaces and tabs at both ends do not count.
Setting serverPart(const char* key, std::string (SettingsStore::*read)() const,
                   void (SettingsStore::*write)(const std::string&),
                   const std::function<Written(const std::string&)>& check) {
    Setting setting = text(key, read, write);
    setting.write = [check, write = std::move(setting.write)](SettingsStore& settings,
                                                              const std::string& value) {
        const std::string part = withoutBlanks(value);
        const auto checked = check(part);
        return checked ? write(settings, part) : checked;
    };
    return setting;
}

Written checkUser(const std::string& user) {
    if (user.empty() || isLoginName(user)) return {};
    return noSuchValue(fmt::format("„{}“ ist kein Benutzername.", displayText(user)));
}

Written checkHost(const std::string& host) {
    if (host.empty() || isHostName(sftpURL({}, host, {}).host)) return {};
    return noSuchValue(fmt::format(
        "„{}“ ist kein Rechner wie nas oder nas:2222 (Port 1 bis 65535).", displayText(host)));
}

Written checkServersFolder(const std::string& path) {
    const auto reason = objectionToServersFolder(path);
    return reason ? noSuchValue(*reason) : Written();
}

Setting optionalText(const char* key, std::optional<std::string> (SettingsStore::*read)() const,
                     void (SettingsStore::*write)(const std::string&),
                     std::function<Written(const std::string&)> check) {
    return {key,
            [read](const SettingsStore& settings) {
                const auto value = (settings.*read)();
                return value ? Json(*value) : Json(nullptr);
            },
            [write, check = std::move(check)](SettingsStore& settings, const std::string& value) {
                const auto checked = check(value);
                if (checked) (settings.*write)(value);
                return checked;
            }};
}

Setting boolean(const char* key, bool (SettingsStore::*read)() const,
                void (SettingsStore::*write)(bool)) {
    return {key, [read](const SettingsStore& settings) { return Json((settings.*read)()); },
            [write](SettingsStore& settings, const std::string& value) -> Written {
                if (value != "true" && value != "false") {
                    return noSuchValue(
                        fmt::format("„{}“ ist weder true noch false.", displayText(value)));
                }
                (settings.*write)(value == "true");
                return {};
            }};
}

Setting kind() {
    return {SettingsKey::destinationKind,
            [](const SettingsStore& settings) {
                return Json(std::string(rawValue(settings.destinationKind())));
            },
            [](SettingsStore& settings, const std::string& value) -> Written {
                const auto wanted = destinationKind(value);
                if (!wanted) {
                    return noSuchValue(
                        fmt::format("„{}“ ist weder folder noch sftp.", displayText(value)));
                }
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

/// Where nothing would ever arrive, a mistyped name must not lie hidden until an import.
Written checkFolder(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) return {};
    const bool isMissing = status.type() == std::filesystem::file_type::not_found;
    return std::unexpected(Refusal{
        ExitStatus::destinationUnusable,
        isMissing
            ? fmt::format("Den Ordner „{}“ gibt es nicht; bitte erst anlegen.", displayText(path))
            : fmt::format("„{}“ ist kein lesbarer Ordner.", displayText(path))});
}

Setting destination(FolderAccess& access) {
    return {SettingsKey::destination,
            [](const SettingsStore& settings) { return Json(settings.destination().path); },
            [&access](SettingsStore& settings, const std::string& value) -> Written {
                if (value.contains("://")) {
                    return noSuchValue(
                        fmt::format("„{}“ ist kein Ordner dieses Rechners. Einen Server macht "
                                    "„bildkurier-cli sftp check“ zum Ziel.",
                                    displayText(value)));
                }
                const auto path = wholePath(value);
                if (!path) return noSuchValue("Der Name eines Ordners fehlt.");
                if (const auto checked = checkFolder(*path); !checked) return checked;
                const Url folder = Url::file(*path);
                access.remember(folder);
                settings.setDestination(folder);
                settings.setDestinationKind(DestinationKind::folder);
                return {};
            }};
}

Written checkDay(const std::string& value) {
    if (value.empty() || startOfLocalDay(value)) return {};
    return noSuchValue(fmt::format("„{}“ ist kein Tag wie 2024-05-09.", displayText(value)));
}

std::vector<Setting> allSettings(FolderAccess& access) {
    using Store = SettingsStore;
    const auto anything = [](const std::string&) { return Written(); };
    return {
        destination(access),
        kind(),
        serverPart(SettingsKey::sftpUser, &Store::sftpUser, &Store::setSftpUser, checkUser),
        serverPart(SettingsKey::sftpHost, &Store::sftpHost, &Store::setSftpHost, checkHost),
        serverPart(SettingsKey::sftpPath, &Store::sftpPath, &Store::setSftpPath,
                   checkServersFolder),
        boolean(SettingsKey::byDate, &Store::byDate, &Store::setByDate),
        boolean(SettingsKey::byType, &Store::byType, &Store::setByType),
        boolean(SettingsKey::useFromDate, &Store::useFromDate, &Store::setUseFromDate),
        optionalText(SettingsKey::fromDay, &Store::fromDay, &Store::setFromDay, checkDay),
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
                       FolderAccess& folderAccess, Report& report) {
    const auto all = allSettings(folderAccess);
    const auto refuse = [&report](const Refusal& refusal) {
        report.error(refusal.message);
        return refusal.status;
    };
    if (!commandLine.key) {
        show(all, settings, commandLine.json);
        if (!commandLine.json) print(windowOnlyNote);
        return ExitStatus::success;
    }
    const auto setting = std::ranges::find(all, *commandLine.key, &Setting::key);
    if (setting == all.end()) {
        return refuse({ExitStatus::usage, fmt::format("Eine Einstellung „{}“ gibt es nicht.",
                                                      displayText(*commandLine.key))});
    }
    if (!commandLine.value) {
        show({*setting}, settings, commandLine.json);
        return ExitStatus::success;
    }
    if (const auto written = setting->write(settings, *commandLine.value); !written)
        return refuse(written.error());
    if (commandLine.json) return ExitStatus::success;
    const std::string& key = setting->key;
    if (key == SettingsKey::useFromDate || key == SettingsKey::fromDay) print(windowOnlyNote);
    if (key == SettingsKey::autoImportEnabled && settings.autoImportEnabled() &&
        settings.autoImportCameraIdentity().value_or("").empty()) {
        print(nobodyTrustedNote);
    }
    return ExitStatus::success;
}

}  // namespace bildkurier
