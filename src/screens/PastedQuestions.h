#pragma once

#include "screens/BulkQuestionListModel.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

class Announcer;

// The sheet that takes a list of questions, one a line. Its text stays until it has been added. Thread: main.
// Failures: in `problem`, which is read to those who do not see it.
class PastedQuestions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY linesChanged) // with these lines; empty for none
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY linesChanged)
    Q_PROPERTY(QString addLabel READ addLabel NOTIFY linesChanged)

public:
    /// Both are borrowed and must outlive the sheet.
    PastedQuestions(BulkQuestionListModel& bulkList, Announcer& speaker);

    [[nodiscard]] bool isOpen() const { return shownOpen; }
    [[nodiscard]] QString text() const { return shownText; }
    [[nodiscard]] QString problem() const;
    [[nodiscard]] bool canAdd() const { return lineCount > 0 && !isTooLong(); }
    [[nodiscard]] QString addLabel() const { return tr("Add %1 questions").arg(lineCount); }

    Q_INVOKABLE void open();
    Q_INVOKABLE void close();
    Q_INVOKABLE void edit(const QString& text);
    Q_INVOKABLE void add();

Q_SIGNALS:
    void openChanged();
    void textChanged();
    void linesChanged();

private:
    // The list and these lines together.
    [[nodiscard]] bool isTooLong() const;

    void takeOver(const QStringList& lines);
    void setOpen(bool open);
    void announceProblem();

    BulkQuestionListModel& list;
    Announcer& announcer;
    bool shownOpen = false;
    QString shownText;
    std::size_t lineCount = 0;
};

} // namespace quorl
