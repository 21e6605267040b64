#pragma once

#include "screens/ModelAdapter.h"
#include "screens/ScorePointListModel.h"
#include "screens/ScoreTableModel.h"
#include "screens/ScreenTable.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantList>
#include <qqmlregistration.h>

#include <chrono>

namespace quorl {

// The Performance screen: what the judged answers add up to, by model and by category. The tables follow the
// chosen category, the three chips speak of the whole library. Thread: main. Failures: in the alert of the
// model.
class ScoresScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed) // nothing was ever asked
    Q_PROPERTY(bool canExport READ canExport NOTIFY changed)
    Q_PROPERTY(QVariantList categories READ categories NOTIFY categoriesChanged) // objects of text and value
    Q_PROPERTY(QString filter READ filter NOTIFY filterChanged) // a category's id; empty for all
    Q_PROPERTY(bool includeChildren READ includeChildren NOTIFY filterChanged)
    Q_PROPERTY(QVariantList chips READ chips NOTIFY changed) // objects of symbol, value and label
    Q_PROPERTY(quorl::ScoreTableModel* overall READ overall CONSTANT)
    Q_PROPERTY(quorl::ScoreTableModel* byCategory READ byCategory CONSTANT)
    Q_PROPERTY(quorl::ScorePointListModel* points READ points CONSTANT)

public:
    /// The parts are borrowed and must outlive the screen.
    explicit ScoresScreen(const ScreenParts& parts);

    [[nodiscard]] bool isEmpty() const { return chipValues.answers == 0; }
    [[nodiscard]] bool canExport() const { return overallRows.count() > 0 || categoryRows.count() > 0; }
    [[nodiscard]] QVariantList categories() const { return choices; }
    [[nodiscard]] QString filter() const { return shownFilter; }
    [[nodiscard]] bool includeChildren() const { return includesChildren; }
    [[nodiscard]] QVariantList chips() const;
    [[nodiscard]] ScoreTableModel* overall() { return &overallRows; }
    [[nodiscard]] ScoreTableModel* byCategory() { return &categoryRows; }
    [[nodiscard]] ScorePointListModel* points() { return &pointRows; }

    Q_INVOKABLE void setFilter(const QString& categoryID);
    Q_INVOKABLE void setIncludeChildren(bool included);
    /// The table by category if it has any rows, else the other; as they are filtered, in the order of the
    /// scores.
    Q_INVOKABLE void exportCSV();

Q_SIGNALS:
    void changed();
    void categoriesChanged();
    void filterChanged();

private:
    struct ChipValues {
        std::size_t answers = 0; // not shown
        std::size_t models = 0;
        std::size_t judged = 0;
        std::size_t categories = 0;

        bool operator==(const ChipValues&) const = default;
    };

    void refresh(const ModelChanges& changes);
    void refreshCategories();
    void refreshScores();

    AppModel& model;
    ScreenServices& services;
    ScoreTableModel overallRows{ScoreTableModel::Categories::hidden};
    ScoreTableModel categoryRows{ScoreTableModel::Categories::shown};
    ScorePointListModel pointRows;
    ChipValues chipValues;
    QVariantList choices;
    QString shownFilter;
    bool includesChildren = true;
    bool isStale = false; // answers have changed since the last look
    QTimer pause;         // between two looks at all answers while they keep coming
};

} // namespace quorl
