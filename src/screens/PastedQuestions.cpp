#include "screens/PastedQuestions.h"

#include "screens/Announcer.h"

namespace quorl {

PastedQuestions::PastedQuestions(BulkQuestionListModel& bulkList, Announcer& speaker)
    : list(bulkList), announcer(speaker) {
    connect(&list, &BulkQuestionListModel::linesOverflowed, this, &PastedQuestions::takeOver);
}

QString PastedQuestions::problem() const {
    return isTooLong() ? tr("A batch can hold up to 200 questions.") : QString();
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
    const bool wasTooLong = isTooLong();
    shownText = text;
    lineCount = static_cast<std::size_t>(BulkQuestionListModel::linesOf(text).size());
    Q_EMIT textChanged();
    Q_EMIT linesChanged();
    if (shownOpen && !wasTooLong)
        announceProblem();
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
    if (!open)
        return;
    Q_EMIT linesChanged(); // the list may have grown or shrunk
    announceProblem();
}

void PastedQuestions::announceProblem() {
    if (isTooLong())
        announcer.announce(problem());
}

} // namespace quorl
