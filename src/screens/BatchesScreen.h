#pragma once

#include "screens/BatchItemListModel.h"
#include "screens/BatchListModel.h"
#include "screens/ModelAdapter.h"
#include "screens/ScreenTable.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <qqmlregistration.h>

#include <vector>

namespace quorl {

// The API batches: how programs reach the workspace, and what they have sent. It holds nothing of its own.
// Thread: main. Failures: none; one of the listener is the status.
class BatchesScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")

    // The connection panel
    Q_PROPERTY(QString baseURL READ baseURL NOTIFY connectionChanged)
    Q_PROPERTY(QString token READ token NOTIFY connectionChanged)
    Q_PROPERTY(QString authorization READ authorization NOTIFY connectionChanged)
    Q_PROPERTY(QString status READ status NOTIFY connectionChanged)
    Q_PROPERTY(bool isListening READ isListening NOTIFY connectionChanged)

    Q_PROPERTY(quorl::BatchListModel* batches READ batches CONSTANT)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged) // -1 for none

    // The selected batch
    Q_PROPERTY(bool hasBatch READ hasBatch NOTIFY detailChanged)
    Q_PROPERTY(QString title READ title NOTIFY detailChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY detailChanged)
    Q_PROPERTY(QString progress READ progress NOTIFY detailChanged) // while it runs; else empty
    Q_PROPERTY(quorl::BatchItemListModel* items READ items CONSTANT)

public:
    /// The parts are borrowed and must outlive the screen.
    explicit BatchesScreen(const ScreenParts& parts);

    [[nodiscard]] QString baseURL() const;
    [[nodiscard]] QString token() const;
    [[nodiscard]] QString authorization() const;
    [[nodiscard]] QString status() const;
    [[nodiscard]] bool isListening() const;
    [[nodiscard]] BatchListModel* batches() { return &batchRows; }
    [[nodiscard]] int selectedRow() const { return row; }
    [[nodiscard]] bool hasBatch() const { return shown.hasBatch; }
    [[nodiscard]] QString title() const { return shown.title; }
    [[nodiscard]] QString subtitle() const { return shown.subtitle; }
    [[nodiscard]] QString progress() const { return shown.progress; }
    [[nodiscard]] BatchItemListModel* items() { return &itemRows; }

    Q_INVOKABLE void copyURL();
    Q_INVOKABLE void copyToken();
    Q_INVOKABLE void select(int row);
    Q_INVOKABLE void requestDelete();
    Q_INVOKABLE void openItem(int row);

Q_SIGNALS:
    void connectionChanged();
    void selectionChanged();
    void detailChanged();

private:
    struct Detail {
        bool hasBatch = false;
        QString title;
        QString subtitle;
        QString progress;

        bool operator==(const Detail&) const = default;
    };

    void refresh(const ModelChanges& changes);
    void refreshBatches();
    void refreshProgress();
    void refreshDetail(const QuorlBatch* batch);
    [[nodiscard]] BatchRow makeRow(const QuorlBatch& batch) const;
    [[nodiscard]] BatchItemRow makeItem(const QuorlRun& run) const;

    AppModel& model;
    ScreenServices& services;
    std::vector<BatchRow> rows; // as `batchRows` has them
    BatchListModel batchRows;
    BatchItemListModel itemRows;
    Detail shown;
    int row = -1;
    QTimer clockwork; // the ages of the batches grow although nothing happens
};

} // namespace quorl
