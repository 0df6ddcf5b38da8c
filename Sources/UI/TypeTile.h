// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "TypeSummary.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QString>

namespace bildkurier {

/// The files of one type as the window shows them.
struct TypeTile {
    Q_GADGET
    QML_VALUE_TYPE(typeTile)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString count MEMBER count CONSTANT)
    Q_PROPERTY(QString size MEMBER size CONSTANT)
    Q_PROPERTY(QString label READ label CONSTANT)

public:
    TypeTile() = default;
    explicit TypeTile(const TypeSummary& summary);

    /// For those who hear the tile.
    QString label() const;

    QString symbol;
    QString name;
    QString count;
    QString size;
};

/// The symbol for files with this extension, which is in capitals.
QString symbolFor(const std::string& ext);

}  // namespace bildkurier
