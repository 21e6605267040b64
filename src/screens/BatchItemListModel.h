#pragma once

#include "screens/RecordListModel.h"

#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// One item of a batch as its row shows it.
struct BatchItemRow {
    UUID id; // of the run
    QString prompt;
    QString category;
    QString models;
    QString running; // empty where no answer is
    QString failed;  // empty where none has

    bool operator==(const BatchItemRow&) const = default;
};

// The items of a batch in the order of posting. Thread: main. Failures: none.
class BatchItemListModel : public RecordListModel<BatchItemRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by BatchesScreen")

public:
    using RecordListModel::RecordListModel;

    enum Role {
        PromptRole = Qt::UserRole,
        CategoryRole,
        ModelCountRole,
        RunningRole,
        FailedRole,
        SpokenRole,
    };

    /// The run of that row; the nil id if there is none.
    [[nodiscard]] UUID idAt(int row) const;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace quorl
