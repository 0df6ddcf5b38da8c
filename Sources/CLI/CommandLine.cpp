// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CommandLine.h"

#include "LocalDay.h"
#include "SettingsHelp.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

using Command = CommandLine::Command;

// Names of arguments that stand without a word in front.
constexpr auto keyFile = "DATEI";
constexpr auto serverAddress = "ADRESSE";

/// Nothing is resolved: "link/.." means what the file system makes of it. As it is where there
/// is no current folder any more.
std::string absolute(const std::string& path) {
    std::error_code error;
    auto found = std::filesystem::absolute(path, error);
    return error ? path : found.string();
}

/// "cameras, plan oder import".
std::string commandsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands(nullptr))
        names.push_back(command->get_name());
    const std::string last = names.back();
    names.pop_back();
    return fmt::format("{} oder {}", fmt::join(names, ", "), last);
}

/// The program with the commands that were named, "bildkurier-cli key show".
std::string called(const CLI::App& app) {
    std::string words = app.get_name();
    for (auto named = app.get_subcommands(); !named.empty();
         named = named.front()->get_subcommands()) {
        words += " " + named.front()->get_name();
    }
    return words;
}

/// What was asked for and is not there; `app` is the innermost command that was named.
std::string whatIsMissing(const CLI::App& app, const std::string& subject,
                          const std::vector<std::string>& extras) {
    if (subject == keyFile) return "Es fehlt die Datei mit dem privaten Schlüssel.";
    if (subject == serverAddress) return "Es fehlt die Adresse des Servers.";
    if (!extras.empty()) {
        const bool isOption = extras.front().starts_with('-');
        return fmt::format("{}: {}", isOption ? "Unbekannte Angabe" : "Unbekannter Befehl",
                           extras.front());
    }
    return fmt::format("Es fehlt ein Befehl: {}.", commandsOf(app));
}

/// The parser's complaint in German.
std::string complaint(const CLI::ParseError& error, const CLI::App& app) {
    const std::string what = error.what();
    const std::string subject = what.substr(0, what.find_first_of(": "));
    const std::vector<std::string> extras = app.remaining(true);
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        const CLI::App* innermost = &app;
        while (!innermost->get_subcommands().empty())
            innermost = innermost->get_subcommands().front();
        return whatIsMissing(*innermost, subject, extras);
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        return fmt::format("Unbekannte Angabe: {}", fmt::join(extras, " "));
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        if (what.ends_with(" missing"))
            return fmt::format("Der Angabe {} fehlt ein Wert.", subject);
        return fmt::format("Die Angabe {} steht doppelt.", subject);
    }
    if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) {
        return what.substr(what.find(": ") + 2);
    }
    if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
        return fmt::format("Die Angabe {} widerspricht einer anderen.", subject);
    }
    if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
        const std::string given = what.substr(what.find(": ") + 2);
        return fmt::format("Die Angabe {} nimmt keinen Wert.", given.substr(0, given.find(' ')));
    }
    return fmt::format("Die Angabe {} ist nicht verständlich.", subject);
}

void germanHelp(CLI::App& app) {
    const auto formatter = std::make_shared<CLI::Formatter>();
    formatter->label("OPTIONS", "ANGABEN");
    formatter->label("SUBCOMMAND", "BEFEHL");
    formatter->label("Usage", "Aufruf");
    formatter->label("Positionals", "Argumente");
    app.formatter(formatter);
    app.option_defaults()->group("Angaben");
    app.set_help_flag("-h,--help", "Diese Hilfe")->group("Angaben");
}

/// What comes after the list of commands.
std::string endOfHelp() {
    return "„bildkurier-cli BEFEHL --help“ erklärt einen Befehl.\n"
           "\n"
           "Rückgabewert:\n"
           "  0    alles geladen, alles am Ziel, oder es gab nichts zu tun\n"
           "  1    mindestens eine Datei ließ sich nicht laden oder ist nicht nachweislich am "
           "Ziel\n"
           "  2    falscher Aufruf\n"
           "  3    keine Kamera, oder nicht diese\n"
           "  4    Ziel oder Schlüssel nicht brauchbar, eine Einstellung nicht zu speichern, oder "
           "es läuft\n"
           "       schon ein Import\n"
           "  130  mit Strg-C oder SIGTERM beendet";
}

/// The parser and where it puts what it finds.
class Parser {
public:
    Parser() {
        app_.require_subcommand(1);
        germanHelp(app_);
        addJson(app_);
        app_.set_version_flag("--version", "Bildkurier " BILDKURIER_VERSION, "Die Version")
            ->group("Angaben");
        addCameras();
        addImport("plan", "Zeigt, was ein Import laden würde", Command::plan);
        addImport("import", "Lädt, was am Ziel noch fehlt", Command::import)
            ->add_flag("--verify", result_.verify,
                       "Danach prüfen, ob jede geladene Datei Byte für Byte am Ziel ist");
        addVerify();
        addWatch();
        addSettings();
        addKey();
        addSftp();
        // Commands take over what is set before they are added.
        app_.footer(endOfHelp());
    }

    std::expected<CommandLine, CommandLineAnswer> parse(std::span<char* const> arguments) {
        try {
            app_.parse(static_cast<int>(arguments.size()), arguments.data());
        } catch (const CLI::CallForVersion& version) {
            return std::unexpected(CommandLineAnswer{ExitStatus::success, version.what()});
        } catch (const CLI::Success&) {
            return std::unexpected(CommandLineAnswer{ExitStatus::success, help()});
        } catch (const CLI::ParseError& error) {
            return std::unexpected(refusal(complaint(error, app_), arguments));
        }
        takeCards();
        if (result_.destination) result_.destination = absolute(*result_.destination);
        if (result_.file) result_.file = absolute(*result_.file);
        return result_;
    }

private:
    /// A folder that is named twice, however it is written, is one camera.
    void takeCards() {
        for (std::string& card : result_.cards) card = absolute(card);
        std::set<std::filesystem::path> known;
        std::erase_if(result_.cards, [&known](const std::string& card) {
            std::error_code error;
            const auto resolved = std::filesystem::weakly_canonical(card, error);
            return !known.insert((error ? std::filesystem::path(card) : resolved) / "").second;
        });
    }

    std::string help() const {
        const std::string text = app_.help();
        return text.substr(0, text.find_last_not_of('\n') + 1);
    }

    /// The parser stops at what it does not understand, and has not seen the rest.
    CommandLineAnswer refusal(std::string complaint, std::span<char* const> arguments) const {
        const bool json = std::ranges::any_of(
            arguments, [](const char* word) { return std::string_view(word) == "--json"; });
        if (!json) complaint += fmt::format("\nMehr dazu: {} --help", called(app_));
        return {ExitStatus::usage, std::move(complaint), json};
    }

    static CLI::App* addGroup(CLI::App& to, const std::string& name, const std::string& purpose) {
        CLI::App* added = to.add_subcommand(name, purpose);
        added->group("Befehle");
        added->set_help_flag("-h,--help", "Diese Hilfe")->group("Angaben");
        return added;
    }

    CLI::App* addCommand(const std::string& name, const std::string& purpose, Command command) {
        return addCommand(app_, name, purpose, command);
    }

    CLI::App* addCommand(CLI::App& to, const std::string& name, const std::string& purpose,
                         Command command) {
        CLI::App* added = addGroup(to, name, purpose);
        added->callback([this, command] { result_.command = command; });
        addJson(*added);
        return added;
    }

    void addJson(CLI::App& app) {
        app.add_flag("--json", result_.json, "Ein JSON-Objekt je Zeile ausgeben");
    }

    CLI::App* addCameraCommand(const std::string& name, const std::string& purpose,
                               Command command) {
        CLI::App* added = addCommand(name, purpose, command);
        added
            ->add_option("--card", result_.cards,
                         "Speicherkarte oder Ordner als Kamera nehmen (mehrfach möglich)")
            ->option_text("ORDNER")
            ->expected(1)
            ->allow_extra_args(false)
            ->take_all()
            ->check(folder());
        return added;
    }

    void addCameras() {
        addCameraCommand("cameras", "Zeigt die angeschlossenen Kameras und Karten",
                         Command::cameras);
    }

    CLI::App* addChoosingCommand(const std::string& name, const std::string& purpose,
                                 Command command) {
        CLI::App* added = addCameraCommand(name, purpose, command);
        added->add_option("--camera", result_.camera, "Kamera mit diesem Namen oder dieser Kennung")
            ->option_text("NAME|KENNUNG");
        addDestination(*added);
        return added;
    }

    void addVerify() {
        addChoosingCommand("verify",
                           "Prüft, ob alle Fotos, Videos und Tonaufnahmen der Karte am Ziel sind",
                           Command::verify)
            ->add_flag("--content", result_.content,
                       "Byte für Byte vergleichen, nicht nur Namen und Größen");
    }

    CLI::App* addImport(const std::string& name, const std::string& purpose, Command command) {
        CLI::App* added = addChoosingCommand(name, purpose, command);
        added
            ->add_option_function<std::string>(
                "--since", [this](const std::string& day) { result_.since = startOfLocalDay(day); },
                "Nur Aufnahmen ab diesem Tag")
            ->option_text("JJJJ-MM-TT")
            ->check(day());
        return added;
    }

    void addWatch() {
        CLI::App* added = addCameraCommand(
            "watch", "Bleibt und lädt die vertraute Kamera, sobald sie verbunden ist",
            Command::watch);
        added
            ->add_option("--trust", result_.trust,
                         "Der Kamera mit diesem Namen oder dieser Kennung vertrauen")
            ->option_text("NAME|KENNUNG");
        addDestination(*added);
    }

    void addSettings() {
        CLI::App* added =
            addCommand("settings", "Zeigt die Einstellungen oder ändert eine", Command::settings);
        added->add_option("NAME", result_.key, "Welche")->option_text(" ");
        added->add_option("WERT", result_.value, "Ihr neuer Wert")->option_text(" ");
        added->footer(settingsHelp());
    }

    void addKey() {
        CLI::App* key = addGroup(app_, "key", "Der eigene ssh-Schlüssel der App");
        key->require_subcommand(1);
        addCommand(*key, "show", "Zeigt den öffentlichen Schlüssel", Command::keyShow);
        CLI::App* generate =
            addCommand(*key, "generate", "Erzeugt einen neuen Schlüssel", Command::keyGenerate);
        CLI::App* import =
            addCommand(*key, "import", "Übernimmt einen vorhandenen Schlüssel", Command::keyImport);
        for (CLI::App* command : {generate, import}) {
            command->add_flag("--replace", result_.replace,
                              "Auch wenn es schon einen gibt; der alte geht verloren");
        }
        import->add_option(keyFile, result_.file, "Der private Schlüssel")
            ->option_text(" ")
            ->required();
        addCommand(*key, "remove", "Löscht den Schlüssel der App", Command::keyRemove);
    }

    void addSftp() {
        CLI::App* sftp = addGroup(app_, "sftp", "Server als Ziel");
        sftp->require_subcommand(1);
        addServer(*addCommand(
            *sftp, "check", "Verbindet, legt den Ordner an, prüft ihn und stellt ihn als Ziel ein",
            Command::sftpCheck));
        addServer(*addCommand(*sftp, "forget", "Vergisst den gespeicherten Server-Schlüssel",
                              Command::sftpForget));
    }

    void addServer(CLI::App& app) {
        app.add_option_function<std::string>(
               serverAddress, [this](const std::string& text) { takeServer(text); },
               "Wie sftp://benutzer@rechner:22/ordner")
            ->option_text(" ")
            ->required()
            ->check(server());
    }

    void takeServer(const std::string& text) {
        if (auto address = ServerAddress::parse(text)) result_.server = *std::move(address);
    }

    void takeDestination(const std::string& text) {
        if (isServerAddress(text)) return takeServer(text);
        result_.destination = text;
    }

    void addDestination(CLI::App& app) {
        app.add_option_function<std::string>(
               "--to", [this](const std::string& text) { takeDestination(text); },
               "Zielordner oder sftp-Adresse (sonst das eingestellte Ziel)")
            ->option_text("ORDNER|ADRESSE")
            ->check(destination());
        addSwitch(app, "by-date", result_.byDate, "In Ordner je Aufnahmetag sortieren",
                  "Nicht nach Aufnahmetag sortieren");
        addSwitch(app, "by-type", result_.byType, "In Ordner je Dateityp sortieren",
                  "Nicht nach Dateityp sortieren");
    }

    static void addSwitch(CLI::App& app, const std::string& name, std::optional<bool>& value,
                          const std::string& on, const std::string& off) {
        CLI::Option* yes = app.add_flag_callback("--" + name, [&value] { value = true; }, on);
        CLI::Option* no = app.add_flag_callback("--no-" + name, [&value] { value = false; }, off);
        yes->option_text(" ");
        no->option_text(" ")->excludes(yes);
    }

    static CLI::Validator folder() {
        return {[](const std::string& text) -> std::string {
                    if (text.empty()) return "Der Name eines Ordners fehlt.";
                    if (!text.contains("://")) return {};
                    return fmt::format("„{}“ ist kein Ordner dieses Rechners.", text);
                },
                {}};
    }

    static CLI::Validator server() {
        return {[](const std::string& text) {
                    const auto address = ServerAddress::parse(text);
                    return address ? std::string() : address.error();
                },
                {}};
    }

    static CLI::Validator destination() {
        return {[](const std::string& text) {
                    if (isServerAddress(text)) return server()(text);
                    if (text.empty() || !text.contains("://")) return folder()(text);
                    return fmt::format(
                        "„{}“ ist weder ein Ordner dieses Rechners noch eine Adresse wie "
                        "sftp://benutzer@rechner:22/ordner.",
                        text);
                },
                {}};
    }

    static CLI::Validator day() {
        return {[](const std::string& text) {
                    return startOfLocalDay(text)
                               ? std::string()
                               : fmt::format("„{}“ ist kein Tag wie 2024-05-09.", text);
                },
                {}};
    }

    CLI::App app_{"Bildkurier lädt Fotos, Videos und Tonaufnahmen von Kameras und Karten.",
                  "bildkurier-cli"};
    CommandLine result_;
};

}  // namespace

std::expected<CommandLine, CommandLineAnswer> parseCommandLine(std::span<char* const> arguments) {
    return Parser().parse(arguments);
}

}  // namespace bildkurier
