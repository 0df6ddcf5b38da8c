// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace bildkurier {

/// Pages with the scheme "bildkurier-test" come here instead of to a browser, for as long as this
/// lives. One at a time.
class OpenedPages : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList opened MEMBER opened_ NOTIFY changed)

public:
    OpenedPages() { QDesktopServices::setUrlHandler(scheme, this, "note"); }
    ~OpenedPages() override { QDesktopServices::unsetUrlHandler(scheme); }
    OpenedPages(const OpenedPages&) = delete;
    OpenedPages& operator=(const OpenedPages&) = delete;

    Q_INVOKABLE void forget() { opened_.clear(); }

public slots:
    void note(const QUrl& page) {
        opened_.append(page.toString());
        emit changed();
    }

signals:
    void changed();

private:
    inline static const QString scheme = QStringLiteral("bildkurier-test");
    QStringList opened_;
};

}  // namespace bildkurier
