// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DialogFolderPicker.h"

#include "PortalDialog.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QWindow>
#include <filesystem>
#include <system_error>

namespace bildkurier {

namespace {

/// Names of files are bytes.
QString decoded(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

/// The folder itself, or the nearest one around it that there is.
Url nearestFolder(const Url& folder) {
    std::filesystem::path path = folder.path;
    std::error_code error;
    while (!std::filesystem::is_directory(path, error) && path.has_relative_path())
        path = path.parent_path();
    return Url::file(path.string());
}

std::optional<Url> askHere(bool folder, const Url& start, const QString& prompt) {
    QWindow* front = QGuiApplication::focusWindow();
    QFileDialog dialog;
    dialog.setFileMode(folder ? QFileDialog::Directory : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::ShowDirsOnly, folder);
    if (!folder)
        dialog.setFilter(QDir::AllDirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    dialog.setDirectory(decoded(start.path));
    dialog.setLabelText(QFileDialog::Accept, prompt);
    // So that it does not open behind.
    dialog.winId();
    dialog.windowHandle()->setTransientParent(front);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return Url::file(QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString());
}

}  // namespace

std::optional<Url> DialogFolderPicker::chooseFolder(const Url& start) {
    return choose(true, start, QObject::tr("Auswählen"));
}

std::optional<Url> DialogFolderPicker::chooseFile(const Url& start, const std::string& prompt) {
    return choose(false, start, QString::fromStdString(prompt));
}

std::optional<Url> DialogFolderPicker::choose(bool folder, const Url& wanted,
                                              const QString& prompt) const {
    const Url start = nearestFolder(wanted);
    PortalDialog portal(bus_, {.start = start, .accept = prompt, .forFolder = folder});
    if (const auto answer = portal.ask()) return *answer;
    return askHere(folder, start, prompt);
}

}  // namespace bildkurier
