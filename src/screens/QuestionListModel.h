#pragma once

#include "app/AppModel.h"
#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

namespace quorl {

// The typed questions of the draft and every edit of them. An edit names its question, and its option, by id:
// one that has gone meanwhile takes no edit, and its neighbour stays as it is. Thread: main. Failures: none.
class QuestionListModel : public RecordListModel<DecisionQuestion> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")

public:
    /// `appModel` is borrowed and must outlive the list.
    explicit QuestionListModel(AppModel& appModel) : model(appModel) { refresh(); }

    enum class Type { Choice, Score, YesNo };
    Q_ENUM(Type)

    enum Role {
        QuestionIDRole = Qt::UserRole,
        QuestionTypeRole,
        InstructionsRole,
        OptionIDsRole,
        OptionLabelsRole,
        LevelsRole, // from lowest to highest
        CanAddLevelRole,
        YesMeansRole,
        NoMeansRole,
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Takes the rows from the draft.
    void refresh() { setRows(*model.draftQuestions); }

    Q_INVOKABLE void addQuestion();
    Q_INVOKABLE void removeQuestion(const QString& questionID);
    Q_INVOKABLE void setType(const QString& questionID, quorl::QuestionListModel::Type type);
    Q_INVOKABLE void editInstructions(const QString& questionID, const QString& text);
    Q_INVOKABLE void editOption(const QString& questionID, const QString& optionID, const QString& text);
    Q_INVOKABLE void addOption(const QString& questionID);
    Q_INVOKABLE void editLevel(const QString& questionID, int place, const QString& text);
    Q_INVOKABLE void addLevel(const QString& questionID);
    Q_INVOKABLE void editYesMeans(const QString& questionID, const QString& text);
    Q_INVOKABLE void editNoMeans(const QString& questionID, const QString& text);

private:
    // Lets `edit` change the question of that id, if it is there.
    template <class Edit>
    void change(const QString& questionID, Edit edit);

    AppModel& model;
};

} // namespace quorl
