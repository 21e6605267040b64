#pragma once

#include "screens/BulkQuestionListModel.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// The sheet that takes a list of questions, one a line. Its text stays until it has been added. Thread: main.
// Failures: none.
class PastedQuestions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(bool isTooLong READ isTooLong NOTIFY linesChanged) // the list and these lines together
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY linesChanged)
    Q_PROPERTY(QString addLabel READ addLabel NOTIFY linesChanged)

public:
    /// `bulkList` is borrowed and must outlive the sheet.
    explicit PastedQuestions(BulkQuestionListModel& bulkList);

    [[nodiscard]] bool isOpen() const { return shownOpen; }
    [[nodiscard]] QString text() const { return shownText; }
    [[nodiscard]] bool isTooLong() const;
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
    void takeOver(const QStringList& lines);
    void setOpen(bool open);

    BulkQuestionListModel& list;
    bool shownOpen = false;
    QString shownText;
    std::size_t lineCount = 0;
};

} // namespace quorl
