#pragma once

#include "screens/RecordListModel.h"

#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// A batch as its row shows it.
struct BatchRow {
    UUID id;
    QString name;
    QString kind;
    QString count;
    QString status;
    QString progress; // answers ended of all, while it runs; else empty
    QString when;
    bool isRunning = false;

    bool operator==(const BatchRow&) const = default;
};

// The batches that programs have made, newest first. Thread: main. Failures: none.
class BatchListModel : public RecordListModel<BatchRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by BatchesScreen")

public:
    using RecordListModel::RecordListModel;

    enum Role {
        BatchNameRole = Qt::UserRole,
        KindTitleRole,
        RunCountRole,
        StatusRole,
        ProgressRole,
        WhenRole,
        IsRunningRole,
        SpokenRole,
    };

    /// The row of that batch; -1 if it has none.
    [[nodiscard]] int rowOf(const UUID& id) const;
    /// The batch of that row; the nil id if there is none.
    [[nodiscard]] UUID idAt(int row) const;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace quorl
