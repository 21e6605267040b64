#pragma once

#include "app/AppModel.h"
#include "decision/Veritor.h"
#include "screens/RecordListModel.h"

#include <QStringList>
#include <qqmlregistration.h>

#include <span>

namespace quorl {

// The bulk list of the draft and every edit of it, each by the id of its row: one that has gone meanwhile
// takes no edit. Thread: main. Failures: none.
class BulkQuestionListModel : public RecordListModel<BulkQuestion> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY countChanged) // a row, be it a copy

public:
    /// `appModel` is borrowed and must outlive the list.
    explicit BulkQuestionListModel(AppModel& appModel) : model(appModel) { refresh(); }

    enum Role { BulkIDRole = Qt::UserRole, TextRole };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int count() const { return rowCount(); }
    [[nodiscard]] bool canAdd() const { return rows.size() < Veritor::maximumBulkQuestions; }

    /// How many rows say something.
    [[nodiscard]] std::size_t filledCount() const;

    /// Takes the rows from the draft.
    void refresh();

    /// What the editor of a row holds now. A text of several lines, as a paste brings it, becomes a row for
    /// each that is not blank; where there is no room for them, the row takes the first and
    /// `linesOverflowed` tells the others.
    Q_INVOKABLE void edit(const QString& bulkID, const QString& text);

    Q_INVOKABLE void add();
    /// A copy at the end of the list.
    Q_INVOKABLE void duplicate(const QString& bulkID);
    Q_INVOKABLE void remove(const QString& bulkID);
    /// On to the row below; from the last one, to a new one.
    Q_INVOKABLE void advance(const QString& bulkID);

    /// A row for each line, in the place of the blank ones. Room for them is the caller's to see to.
    void append(const QStringList& lines);

    /// The lines of a text, trimmed, without the empty ones.
    [[nodiscard]] static QStringList linesOf(const QString& text);

Q_SIGNALS:
    void countChanged();
    void caretRequested(int row);
    void linesOverflowed(const QStringList& lines);

private:
    void spread(std::size_t place, const QStringList& lines);
    [[nodiscard]] std::optional<std::size_t> placeOf(const QString& bulkID) const;
    void write(std::vector<BulkQuestion> next);

    AppModel& model;
};

} // namespace quorl
