#pragma once

#include "app/ScoreMath.h"

#include <QAbstractListModel>
#include <QStringList>
#include <qqmlregistration.h>

#include <span>
#include <vector>

namespace quorl {

// The rows of a score table, in the words of its cells. It stands in the order of the scores until a column
// is chosen to sort by; a cell without a value comes last in either direction. Thread: main. Failures: none.
class ScoreTableModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ScoresScreen")
    Q_PROPERTY(QStringList heads READ heads CONSTANT) // by column
    Q_PROPERTY(bool hasCategories READ hasCategories CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int sortColumn READ sortColumn NOTIFY sortChanged) // -1 for the order of the scores
    Q_PROPERTY(bool sortsDescending READ sortsDescending NOTIFY sortChanged)
    Q_PROPERTY(QString sorting READ sorting NOTIFY sortChanged) // of that column, in words; empty without one

public:
    enum class Categories { hidden, shown };

    explicit ScoreTableModel(Categories shownCategories) : categories(shownCategories) {}

    enum Column { Model, Category, Answers, Correct, AverageScore, Time, Cost, Tokens };
    Q_ENUM(Column)

    enum Role {
        CellsRole = Qt::UserRole, // by column; without categories the category's cell is empty
        SpokenRole,               // the row in one line, heads and cells
    };

    [[nodiscard]] QStringList heads() const;
    [[nodiscard]] bool hasCategories() const { return categories == Categories::shown; }
    [[nodiscard]] int count() const { return static_cast<int>(shown.size()); }
    [[nodiscard]] int sortColumn() const { return column; }
    [[nodiscard]] bool sortsDescending() const { return isDescending; }
    [[nodiscard]] QString sorting() const;

    void setRows(std::span<const ScoreRow> next);
    [[nodiscard]] std::span<const ScoreRow> rows() const { return scores; } // unsorted

    /// Once for texts from the first and for figures from the largest, again for the other way round, a third
    /// time for the order of the scores.
    Q_INVOKABLE void sortBy(int next);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The cells of a row, as they stand in any table.
    [[nodiscard]] static QStringList cellsOf(const ScoreRow& row);

Q_SIGNALS:
    void countChanged();
    void sortChanged();

private:
    void show();
    [[nodiscard]] std::vector<ScoreRow> sorted() const;

    const Categories categories;
    std::vector<ScoreRow> scores;
    std::vector<ScoreRow> shown; // the same, as they are sorted
    int column = -1;
    bool isDescending = false;
};

} // namespace quorl
