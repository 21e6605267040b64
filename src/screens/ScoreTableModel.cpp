#include "screens/ScoreTableModel.h"

#include "base/Format.h"
#include "base/Text.h"
#include "screens/Strings.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <optional>

namespace quorl {

namespace {

// In the place of a value that nobody has measured.
QString missing() {
    return QStringLiteral("—");
}

std::optional<double> average(double sum, std::int64_t count) {
    return count < 1 ? std::nullopt : std::optional(sum / static_cast<double>(count));
}

// What a column of figures is sorted by.
std::optional<double> figureOf(const ScoreRow& row, int column) {
    switch (column) {
    case ScoreTableModel::Answers:
        return static_cast<double>(row.answers);
    case ScoreTableModel::Correct:
        return average(static_cast<double>(row.binaryCorrect), row.binaryJudged);
    case ScoreTableModel::AverageScore:
        return average(static_cast<double>(row.ratingSum), row.ratingCount);
    case ScoreTableModel::Time:
        return average(static_cast<double>(row.latencySum), row.latencyCount);
    case ScoreTableModel::Cost:
        return average(row.costSum, row.costCount);
    case ScoreTableModel::Tokens:
        return static_cast<double>(row.inputTokens) + static_cast<double>(row.outputTokens);
    default:
        return std::nullopt;
    }
}

bool isText(int column) {
    return column == ScoreTableModel::Model || column == ScoreTableModel::Category;
}

QString correctCell(const ScoreRow& row) {
    const auto percent = row.correctPercent();
    if (!percent)
        return missing();
    return QStringLiteral("%1% · %2/%3").arg(*percent).arg(row.binaryCorrect).arg(row.binaryJudged);
}

QString averageScoreCell(const ScoreRow& row) {
    const auto score = average(static_cast<double>(row.ratingSum), row.ratingCount);
    return score ? QString::number(*score, 'f', 1) : missing();
}

} // namespace

QStringList ScoreTableModel::heads() const {
    return {tr("Model"),     tr("Category"), tr("Answers"), tr("Correct"),
            tr("Avg score"), tr("Time"),     tr("Cost"),    tr("Tokens")};
}

void ScoreTableModel::setRows(std::span<const ScoreRow> next) {
    if (std::ranges::equal(scores, next))
        return;
    const bool isSameLength = scores.size() == next.size();
    if (!isSameLength)
        beginResetModel();
    scores.assign(next.begin(), next.end());
    order = sorted();
    if (!isSameLength) {
        endResetModel();
        Q_EMIT countChanged();
    } else if (!order.empty()) {
        Q_EMIT dataChanged(index(0), index(count() - 1));
    }
}

void ScoreTableModel::sortBy(int next) {
    const bool fromLargest = !isText(next);
    if (next != column) {
        column = next;
        isDescending = fromLargest;
    } else if (isDescending == fromLargest) {
        isDescending = !isDescending;
    } else {
        column = -1;
        isDescending = false;
    }
    order = sorted();
    if (!order.empty())
        Q_EMIT dataChanged(index(0), index(count() - 1));
    Q_EMIT sortChanged();
}

std::vector<std::size_t> ScoreTableModel::sorted() const {
    std::vector<std::size_t> places(scores.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    if (column < 0)
        return places;
    const auto textOf = [this](std::size_t place) -> const std::string& {
        return column == Model ? scores[place].modelName : scores[place].categoryName;
    };
    const auto textPrecedes = [&](std::size_t left, std::size_t right) {
        return isDescending ? Text::precedesIgnoringCase(textOf(right), textOf(left))
                            : Text::precedesIgnoringCase(textOf(left), textOf(right));
    };
    const auto figurePrecedes = [&](std::size_t left, std::size_t right) {
        const auto first = figureOf(scores[left], column);
        const auto second = figureOf(scores[right], column);
        if (!first || !second)
            return first.has_value() && !second.has_value();
        return isDescending ? *first > *second : *first < *second;
    };
    if (isText(column))
        std::ranges::stable_sort(places, textPrecedes);
    else
        std::ranges::stable_sort(places, figurePrecedes);
    return places;
}

int ScoreTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QStringList ScoreTableModel::cellsOf(const ScoreRow& row) {
    const auto cost = average(row.costSum, row.costCount);
    return {toQString(row.modelName),
            toQString(row.categoryName),
            QString::number(row.answers),
            correctCell(row),
            averageScoreCell(row),
            row.latencyCount < 1 ? missing() : toQString(Format::latency(row.latencySum / row.latencyCount)),
            toQString(Format::cost(cost)),
            toQString(Format::tokens(row.inputTokens, row.outputTokens, false))};
}

QVariant ScoreTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= count())
        return {};
    QStringList cells = cellsOf(scores[order[static_cast<std::size_t>(index.row())]]);
    if (categories == Categories::hidden)
        cells[Category].clear();
    switch (role) {
    case CellsRole:
        return cells;
    case SpokenRole: {
        const QStringList titles = heads();
        QStringList parts{cells[Model]};
        for (int place = Category; place <= Tokens; ++place) {
            if (place != Category || hasCategories())
                parts << titles[place] + QLatin1String(": ") + cells[place];
        }
        return parts.join(QLatin1String(", "));
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> ScoreTableModel::roleNames() const {
    return {{CellsRole, "cells"}, {SpokenRole, "spoken"}};
}

} // namespace quorl
