// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DialogFolderPicker.h"

#include "PortalDialog.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QWindow>

namespace bildkurier {

namespace {

/// Names of files are bytes.
QString decoded(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
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

std::optional<Url> DialogFolderPicker::choose(bool folder, const Url& start,
                                              const QString& prompt) const {
    PortalDialog portal(bus_, {.start = start, .accept = prompt, .forFolder = folder});
    if (const auto answer = portal.ask()) return *answer;
    return askHere(folder, start, prompt);
}

}  // namespace bildkurier
