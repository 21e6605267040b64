#include "screens/PastedQuestions.h"

namespace quorl {

PastedQuestions::PastedQuestions(BulkQuestionListModel& bulkList) : list(bulkList) {
    connect(&list, &BulkQuestionListModel::linesOverflowed, this, &PastedQuestions::takeOver);
}

bool PastedQuestions::isTooLong() const {
    return list.filledCount() + lineCount > Veritor::maximumBulkQuestions;
}

void PastedQuestions::open() {
    setOpen(true);
}

void PastedQuestions::close() {
    setOpen(false);
}

void PastedQuestions::edit(const QString& text) {
    if (text == shownText)
        return;
    shownText = text;
    lineCount = static_cast<std::size_t>(BulkQuestionListModel::linesOf(text).size());
    Q_EMIT textChanged();
    Q_EMIT linesChanged();
}

void PastedQuestions::add() {
    if (!canAdd())
        return;
    list.append(BulkQuestionListModel::linesOf(shownText));
    edit({});
    close();
}

// What is still in the sheet from before comes first.
void PastedQuestions::takeOver(const QStringList& lines) {
    QStringList all = BulkQuestionListModel::linesOf(shownText);
    all.append(lines);
    edit(all.join(QLatin1Char('\n')));
    open();
}

void PastedQuestions::setOpen(bool open) {
    if (open == shownOpen)
        return;
    shownOpen = open;
    Q_EMIT openChanged();
    if (open)
        Q_EMIT linesChanged(); // the list may have grown or shrunk
}

} // namespace quorl
