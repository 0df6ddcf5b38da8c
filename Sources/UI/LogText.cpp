// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LogText.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

namespace bildkurier {

void LogText::setDocument(QQuickTextDocument* document) {
    if (document_ == document) return;
    document_ = document;
    if (document_) {
        document_->textDocument()->setUndoRedoEnabled(false);
        document_->textDocument()->setPlainText(lines_.join(u'\n'));
    }
    emit documentChanged();
}

qsizetype LogText::linesGone(const QStringList& before, const QStringList& after) {
    for (qsizetype gone = 0; gone < before.size(); ++gone) {
        const auto kept = before.size() - gone;
        if (kept <= after.size() && std::equal(before.begin() + gone, before.end(), after.begin()))
            return gone;
    }
    return before.size();
}

void LogText::setLines(const QStringList& lines) {
    if (lines_ == lines) return;
    const auto gone = linesGone(lines_, lines);
    const auto kept = lines_.size() - gone;
    if (document_ && kept == 0) {
        document_->textDocument()->setPlainText(lines.join(u'\n'));
    } else if (document_) {
        append(lines.mid(kept));
        removeFirst(gone);
    }
    lines_ = lines;
    emit linesChanged();
}

void LogText::append(const QStringList& lines) const {
    if (lines.isEmpty()) return;
    QTextCursor cursor(document_->textDocument());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u'\n' + lines.join(u'\n'));
}

void LogText::removeFirst(qsizetype count) const {
    if (count == 0) return;
    QTextCursor cursor(document_->textDocument());
    const auto firstKept = document_->textDocument()->findBlockByNumber(static_cast<int>(count));
    cursor.setPosition(firstKept.position(), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

}  // namespace bildkurier
