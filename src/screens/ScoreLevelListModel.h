#pragma once

#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

#include <string>
#include <vector>

namespace quorl {

// A level of a score scale. The draft knows it by its place alone, which is another as soon as a lower level
// goes; an editor needs a name that stays.
struct ScoreLevel {
    UUID id;
    std::string text;

    bool operator==(const ScoreLevel&) const = default;
};

// The levels of a score, from lowest to highest.
class ScoreLevelListModel : public RecordListModel<ScoreLevel> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by QuestionEditor")

public:
    using RecordListModel::RecordListModel;

    enum Role { LevelIDRole = Qt::UserRole, LevelTextRole };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] const std::vector<ScoreLevel>& levels() const { return rows; }

    /// The levels as the draft has them now: those at the start and at the end that are the same texts still
    /// keep their identity, the ones between as far as their number goes.
    void setTexts(const std::vector<std::string>& texts);

    /// The levels of another question, each a new one.
    void replaceTexts(const std::vector<std::string>& texts);
};

} // namespace quorl
