// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WindowArguments.h"

#include "CardFolder.h"
#include "FileName.h"

#include <QByteArray>
#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <filesystem>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

constexpr int alreadyOpen = 1;
// As the command line has them.
constexpr int usage = 2;
constexpr int noCamera = 3;

constexpr auto help =
    "Kopiert von Kameras, was am Ziel noch fehlt.\n"
    "\n"
    "Aufruf: bildkurier [ANGABEN]\n"
    "\n"
    "Angaben:\n"
    "  -h, --help      Diese Hilfe\n"
    "  --version       Die Version\n"
    "  --card ORDNER   Speicherkarte oder Ordner als Kamera nehmen (mehrfach möglich)";

/// Of what the toolkit takes for itself; session managers start programs again with the first.
const QStringList ofTheToolkit{"session", "platform", "style", "display", "qwindowgeometry"};

// Names of files are bytes: a letter for each.
QString letters(const char* bytes) { return QString::fromLatin1(bytes); }
std::string bytes(const QString& letters) { return letters.toLatin1().toStdString(); }

std::unexpected<WindowAnswer> answer(int exitStatus, std::string text) {
    return std::unexpected(WindowAnswer{exitStatus, std::move(text)});
}

std::unexpected<WindowAnswer> refuse(const std::string& complaint) {
    return answer(usage, complaint + "\nMehr dazu: bildkurier --help");
}

std::unexpected<WindowAnswer> refuseUnknown(const QString& word) {
    return refuse("Unbekannte Angabe: " + displayText(bytes(word)));
}

/// Nothing is resolved: "link/.." means what the file system makes of it.
std::string absolute(const std::string& path) {
    std::error_code error;
    const auto found = fs::absolute(path, error);
    return error ? path : found.string();
}

}  // namespace

std::expected<WindowArguments, WindowAnswer> parseWindowArguments(
    std::span<char* const> arguments) {
    QStringList words;
    for (const char* argument : arguments) words.append(letters(argument));
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption helpOption(QStringList{"h", "help"});
    const QCommandLineOption versionOption(QStringLiteral("version"));
    const QCommandLineOption cardOption(QStringLiteral("card"), {}, QStringLiteral("ORDNER"));
    parser.addOptions({helpOption, versionOption, cardOption});
    for (const QString& name : ofTheToolkit) parser.addOption({name, {}, QStringLiteral("WERT")});

    const bool isUnderstood = parser.parse(words);
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty()) return refuseUnknown("--" + unknown.constFirst());
    if (!isUnderstood)
        return refuse("Hinter --card fehlt ein Ordner, oder hinter einer Angabe steht zu viel.");
    if (parser.isSet(helpOption)) return answer(0, help);
    if (parser.isSet(versionOption)) return answer(0, "Bildkurier " BILDKURIER_VERSION);
    const QStringList others = parser.positionalArguments();
    if (!others.isEmpty()) return refuseUnknown(others.constFirst());

    WindowArguments result;
    for (const QString& card : parser.values(cardOption)) {
        const std::string folder = absolute(bytes(card));
        if (const auto readable = checkCardFolder(folder); !readable)
            return answer(noCamera, readable.error().message);
        result.cards.push_back(folder);
    }
    return result;
}

std::optional<WindowAnswer> answerOfSecond(const WindowArguments& arguments, bool hasAnswered) {
    if (!hasAnswered) {
        return WindowAnswer{alreadyOpen,
                            "Bildkurier läuft schon, aber sein Fenster antwortet nicht."};
    }
    if (arguments.cards.empty()) return std::nullopt;
    return WindowAnswer{alreadyOpen,
                        "Das Fenster ist schon offen, und der Ordner von --card wurde nicht als "
                        "Kamera genommen. Erst das Fenster schließen."};
}

}  // namespace bildkurier
