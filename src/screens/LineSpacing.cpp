#include "screens/LineSpacing.h"

#include <QFontMetricsF>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace quorl {

void LineSpacing::setDocument(QQuickTextDocument* next) {
    document = next;
    // A new paragraph takes its form from the one it is typed or pasted in; only a text that is set as a
    // whole loses it.
    connect(document->textDocument(), &QTextDocument::contentsChange, this,
            [this](int position, int removed, int added) {
                if (!isApplying && position == 0 && added > 0 && removed >= 0)
                    apply();
            });
    apply();
}

void LineSpacing::setFont(const QFont& next) {
    font = next;
    apply();
}

void LineSpacing::setLineHeight(int next) {
    lineHeight = next;
    apply();
}

void LineSpacing::apply() {
    if (!document || lineHeight == 0)
        return;
    const double distance = std::max(0.0, lineHeight - QFontMetricsF(font).height());
    QTextDocument& text = *document->textDocument();
    const QTextBlockFormat present = text.lastBlock().blockFormat();
    if (present.lineHeightType() == QTextBlockFormat::LineDistanceHeight && present.lineHeight() == distance)
        return;

    QTextBlockFormat format;
    format.setLineHeight(distance, QTextBlockFormat::LineDistanceHeight);
    const bool keepsHistory = text.isUndoRedoEnabled();
    isApplying = true;
    text.setUndoRedoEnabled(false); // the form of a paragraph is nothing that a person did
    QTextCursor all(&text);
    all.select(QTextCursor::Document);
    all.mergeBlockFormat(format);
    text.setUndoRedoEnabled(keepsHistory);
    isApplying = false;
}

} // namespace quorl
