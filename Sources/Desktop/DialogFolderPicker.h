// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FolderPicker.h"

#include <QDBusConnection>
#include <QString>
#include <utility>

namespace bildkurier {

/// The desktop's own dialogs, as its portal shows them; without one those of the platform, and
/// where it has none, Qt's.
class DialogFolderPicker final : public FolderPicker {
public:
    /// The portal is on `bus`, if at all.
    explicit DialogFolderPicker(QDBusConnection bus = QDBusConnection::sessionBus())
        : bus_(std::move(bus)) {}

    std::optional<Url> chooseFolder(const Url& start) override;
    std::optional<Url> chooseFile(const Url& start, const std::string& prompt) override;

private:
    std::optional<Url> choose(bool folder, const Url& wanted, const QString& prompt) const;

    QDBusConnection bus_;
};

}  // namespace bildkurier
