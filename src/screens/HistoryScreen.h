#pragma once

#include "screens/HistoryListModel.h"
#include "screens/ScreenTable.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <qqmlregistration.h>

namespace quorl {

// Past comparisons, to be opened again or varied. Thread: main. Failures: those of the model, in its alert.
class HistoryScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(quorl::HistoryListModel* runs READ runs CONSTANT)
    // What stands in place of the list; no title while there are rows, or may yet be.
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY emptyChanged)
    Q_PROPERTY(QString emptyMessage READ emptyMessage NOTIFY emptyChanged)
    Q_PROPERTY(QString emptySymbol READ emptySymbol NOTIFY emptyChanged)

public:
    /// What it is made of is borrowed and must outlive the screen.
    explicit HistoryScreen(const ScreenParts& parts);

    [[nodiscard]] HistoryListModel* runs() { return &list; }
    [[nodiscard]] QString emptyTitle() const;
    [[nodiscard]] QString emptyMessage() const;
    [[nodiscard]] QString emptySymbol() const;

    Q_INVOKABLE void search(const QString& text) { list.search(text); }

    // Nothing happens where the run has gone meanwhile.
    Q_INVOKABLE void open(const QString& runID);
    Q_INVOKABLE void vary(const QString& runID);
    Q_INVOKABLE void requestDelete(const QString& runID);

Q_SIGNALS:
    void emptyChanged();

private:
    enum class Empty { no, noRuns, noMatches };

    void refreshEmpty();

    AppModel& model;
    HistoryListModel list;
    Empty shownEmpty = Empty::no;
    QTimer ages;
};

} // namespace quorl
