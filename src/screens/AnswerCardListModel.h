#pragma once

#include "screens/AnswerCardModel.h"
#include "screens/AnswerCorrection.h"
#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

#include <span>
#include <unordered_map>

namespace quorl {

// A row, known by its answer. What changes in an answer its card tells by itself.
struct AnswerRow {
    UUID id;

    bool operator==(const AnswerRow&) const = default;
};

// The answers of a run, one row a card. Thread: main. Failures: none.
class AnswerCardListModel : public RecordListModel<AnswerRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the screens that show answers")
    Q_PROPERTY(bool isReadDown READ isReadDown NOTIFY runChanged)
    Q_PROPERTY(quorl::AnswerCorrection* correction READ correction CONSTANT)

public:
    /// Both are borrowed and must outlive the model.
    AnswerCardListModel(AppModel& appModel, Clipboard& clipboard);

    enum Role {
        CardRole = Qt::UserRole, // AnswerCardModel*
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The answers of that run; null for none. Answers the cards whose answer has come since the last time.
    std::vector<const AnswerCardModel*> showRun(const QuorlRun* run, std::span<const ModelAnswer> answers);

    /// What a screen reader says of answers that have come; of several, how many, or nobody could listen.
    [[nodiscard]] QString spoken(const std::vector<const AnswerCardModel*>& arrived) const;

    /// Each card holds one short answer, so that they are compared best in one column.
    [[nodiscard]] bool isReadDown() const {
        return common.kind == QuorlKind::decision && common.questions.size() <= 1;
    }

    [[nodiscard]] AnswerCorrection* correction() { return &answerCorrection; }

Q_SIGNALS:
    void runChanged();

private:
    [[nodiscard]] AnswerCardModel& card(const UUID& id) const { return *cards.at(id); }
    std::vector<const AnswerCardModel*> updateCards(std::span<const ModelAnswer> answers);
    void dropCards(std::span<const ModelAnswer> answers);

    AnswerCorrection answerCorrection;
    const AnswerCardParts parts;
    std::optional<UUID> shownRun;
    RunOnCards common;
    std::unordered_map<UUID, AnswerCardModel*> cards; // children of this
};

} // namespace quorl
