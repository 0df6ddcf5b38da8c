// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace bildkurier {

/// Is shown folders instead of the user's file manager, for as long as this lives.
class FileManager : public QObject {
    Q_OBJECT

public:
    FileManager() { QDesktopServices::setUrlHandler("file", this, "show"); }
    ~FileManager() override { QDesktopServices::unsetUrlHandler("file"); }
    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;

    QStringList shown;

public slots:
    void show(const QUrl& folder) { shown.append(folder.toLocalFile()); }
};

}  // namespace bildkurier
