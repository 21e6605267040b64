#include "screens/ScoreTableModel.h"

#include "base/Format.h"
#include "base/Text.h"
#include "screens/Strings.h"

#include <algorithm>
#include <charconv>
#include <iterator>
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
    if (!score)
        return missing();
    // Not QString::number, which rounds a half up: as with all figures here, it goes to the even digit.
    char digits[64]; // a sum of ratings has twenty before the mark at most
    const auto end = std::to_chars(std::begin(digits), std::end(digits), *score, std::chars_format::fixed, 1);
    return QString::fromLatin1(digits, end.ptr - digits);
}

} // namespace

QStringList ScoreTableModel::heads() const {
    return {tr("Model"),     tr("Category"), tr("Answers"), tr("Correct"),
            tr("Avg score"), tr("Time"),     tr("Cost"),    tr("Tokens")};
}

QString ScoreTableModel::sorting() const {
    if (column < 0)
        return {};
    if (isText(column))
        return isDescending ? tr("Sorted from the last") : tr("Sorted from the first");
    return isDescending ? tr("Sorted from the largest") : tr("Sorted from the smallest");
}

void ScoreTableModel::setRows(std::span<const ScoreRow> next) {
    if (std::ranges::equal(scores, next))
        return;
    scores.assign(next.begin(), next.end());
    show();
}

// Rows have nothing of their own but their words, so that it does not matter which of them come and go: the
// last ones do.
void ScoreTableModel::show() {
    const std::vector<ScoreRow> next = sorted();
    const std::size_t before = shown.size();
    if (next.size() < before) {
        beginRemoveRows({}, static_cast<int>(next.size()), count() - 1);
        shown.resize(next.size());
        endRemoveRows();
    }
    for (std::size_t place = 0; place < shown.size(); ++place) {
        if (shown[place] == next[place])
            continue;
        shown[place] = next[place];
        const QModelIndex changed = index(static_cast<int>(place));
        Q_EMIT dataChanged(changed, changed);
    }
    if (next.size() > before) {
        beginInsertRows({}, count(), static_cast<int>(next.size()) - 1);
        shown.insert(shown.end(), next.begin() + count(), next.end());
        endInsertRows();
    }
    if (shown.size() != before)
        Q_EMIT countChanged();
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
    show();
    Q_EMIT sortChanged();
}

std::vector<ScoreRow> ScoreTableModel::sorted() const {
    std::vector<ScoreRow> rows = scores;
    if (column < 0)
        return rows;
    const auto textOf = [this](const ScoreRow& row) -> const std::string& {
        return column == Model ? row.modelName : row.categoryName;
    };
    const auto textPrecedes = [&](const ScoreRow& left, const ScoreRow& right) {
        return isDescending ? Text::precedesIgnoringCase(textOf(right), textOf(left))
                            : Text::precedesIgnoringCase(textOf(left), textOf(right));
    };
    const auto figurePrecedes = [&](const ScoreRow& left, const ScoreRow& right) {
        const auto first = figureOf(left, column);
        const auto second = figureOf(right, column);
        if (!first || !second)
            return first.has_value() && !second.has_value();
        return isDescending ? *first > *second : *first < *second;
    };
    if (isText(column))
        std::ranges::stable_sort(rows, textPrecedes);
    else
        std::ranges::stable_sort(rows, figurePrecedes);
    return rows;
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
    QStringList cells = cellsOf(shown[static_cast<std::size_t>(index.row())]);
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
