// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DialogFolderPicker.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>

namespace bildkurier {

namespace {

/// Names of files are bytes.
QString decoded(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

std::optional<Url> choice(QFileDialog& dialog, const Url& start, const QString& prompt) {
    dialog.setDirectory(decoded(start.path));
    dialog.setLabelText(QFileDialog::Accept, prompt);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return Url::file(QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString());
}

}  // namespace

std::optional<Url> DialogFolderPicker::chooseFolder(const Url& start) {
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return choice(dialog, start, QObject::tr("Auswählen"));
}

std::optional<Url> DialogFolderPicker::chooseFile(const Url& start, const std::string& prompt) {
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setFilter(QDir::AllDirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    return choice(dialog, start, QString::fromStdString(prompt));
}

}  // namespace bildkurier
