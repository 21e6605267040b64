#pragma once

#include "screens/QuestionEditor.h"
#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

#include <unordered_map>

namespace quorl {

struct QuestionRow {
    UUID id;

    bool operator==(const QuestionRow&) const = default;
};

// The typed questions of the draft, one row and one editor each. The editor of a question that has gone lives
// on until the event loop has come round, for its row may still be closing. Thread: main. Failures: none.
class QuestionListModel : public RecordListModel<QuestionRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")
    Q_PROPERTY(quorl::QuestionEditor* first READ first NOTIFY firstChanged) // null where there is none

public:
    /// `appModel` is borrowed and must outlive the list.
    explicit QuestionListModel(AppModel& appModel) : model(appModel) { refresh(); }

    enum Role { QuestionIDRole = Qt::UserRole, EditorRole };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] QuestionEditor* first() const;
    [[nodiscard]] QuestionEditor* editorAt(int row) const;

    /// Takes the rows from the draft.
    void refresh();

    Q_INVOKABLE void addQuestion();
    /// The last one stays.
    Q_INVOKABLE void removeQuestion(const QString& questionID);

Q_SIGNALS:
    void firstChanged();
    void questionAdded(int row); // by the user

private:
    AppModel& model;
    std::unordered_map<UUID, QuestionEditor*> editors; // our children
};

} // namespace quorl
