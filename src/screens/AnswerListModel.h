#pragma once

#include "domain/Records.h"
#include "screens/RecordListModel.h"

#include <qqmlregistration.h>

namespace quorl {

// The answers of the comparison on show, one row a card, in the words of the card.
class AnswerListModel : public RecordListModel<ModelAnswer> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by DraftScreen")

public:
    using RecordListModel::RecordListModel;

    /// The answers of a run of that kind: a decision shows in lines what its stored text holds.
    void setRows(std::span<const ModelAnswer> next, QuorlKind runKind);

    enum class State { Running, Done, Failed };
    Q_ENUM(State)

    enum Role {
        AnswerIDRole = Qt::UserRole,
        ModelNameRole,
        AnswerStateRole,
        AnswerTextRole,
        ErrorRole,  // empty for none
        TimeRole,   // "Time: …"
        TokensRole, // "Tokens: …"
        CostRole,   // "Cost: …"; empty where it is not known
    };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QuorlKind kind = QuorlKind::generation;
};

} // namespace quorl
