// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QQuickTextDocument>
#include <QStringList>

namespace bildkurier {

/// Keeps a text document at the lines of a log: adds what is new at the end, and removes what is
/// gone from the beginning, so that neither selection nor place is lost.
class LogText : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument* document READ document WRITE setDocument NOTIFY documentChanged)
    Q_PROPERTY(QList<QString> lines READ lines WRITE setLines NOTIFY linesChanged)

public:
    QQuickTextDocument* document() const { return document_; }
    void setDocument(QQuickTextDocument* document);
    const QStringList& lines() const { return lines_; }
    void setLines(const QStringList& lines);

    /// How many lines at the beginning of `before` are gone when `after` follows upon it.
    static qsizetype linesGone(const QStringList& before, const QStringList& after);

signals:
    void documentChanged();
    void linesChanged();

private:
    void append(const QStringList& lines) const;
    void removeFirst(qsizetype count) const;

    QQuickTextDocument* document_ = nullptr;
    QStringList lines_;
};

}  // namespace bildkurier
