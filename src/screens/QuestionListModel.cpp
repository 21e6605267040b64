#include "screens/QuestionListModel.h"

#include "screens/Strings.h"

#include <algorithm>

namespace quorl {

QVariant QuestionListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case QuestionIDRole:
        return toQString(rows[static_cast<std::size_t>(index.row())].id.text());
    case EditorRole:
        return QVariant::fromValue(editorAt(index.row()));
    default:
        return {};
    }
}

QHash<int, QByteArray> QuestionListModel::roleNames() const {
    return {{QuestionIDRole, "questionID"}, {EditorRole, "editor"}};
}

QuestionEditor* QuestionListModel::first() const {
    return rows.empty() ? nullptr : editorAt(0);
}

QuestionEditor* QuestionListModel::editorAt(int row) const {
    return editors.at(rows[static_cast<std::size_t>(row)].id);
}

void QuestionListModel::refresh() {
    const QuestionEditor* firstBefore = first();
    std::vector<QuestionRow> next;
    for (const DecisionQuestion& question : *model.draftQuestions) {
        next.push_back({question.id});
        const auto [editor, isNew] = editors.try_emplace(question.id, nullptr);
        if (isNew) {
            editor->second = new QuestionEditor(model, QuestionEditor::Place::questions, question);
            editor->second->setParent(this); // which also keeps it from the garbage collector
        } else {
            editor->second->show(question);
        }
    }
    setRows(next);
    std::erase_if(editors, [&](const auto& entry) {
        const bool isGone = std::find(next.begin(), next.end(), QuestionRow{entry.first}) == next.end();
        if (isGone)
            entry.second->deleteLater();
        return isGone;
    });
    if (first() != firstBefore)
        Q_EMIT firstChanged();
}

void QuestionListModel::addQuestion() {
    std::vector<DecisionQuestion> questions = *model.draftQuestions;
    questions.push_back(DecisionQuestion::starter());
    model.draftQuestions = std::move(questions);
    refresh();
    Q_EMIT questionAdded(rowCount() - 1);
}

void QuestionListModel::removeQuestion(const QString& questionID) {
    const auto id = UUID::parse(questionID.toStdString());
    std::vector<DecisionQuestion> questions = *model.draftQuestions;
    std::erase_if(questions, [&](const DecisionQuestion& question) { return question.id == id; });
    if (questions.empty())
        return;
    model.draftQuestions = std::move(questions);
    refresh();
}

} // namespace quorl
