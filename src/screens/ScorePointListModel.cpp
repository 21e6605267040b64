#include "screens/ScorePointListModel.h"

#include "base/Format.h"
#include "screens/ScoreTableModel.h"
#include "screens/Strings.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace quorl {

namespace {

using Figure = std::optional<double>;

Figure timeOf(const ScoreRow& row) {
    return row.latencyCount < 1 ? Figure() : static_cast<double>(row.latencySum / row.latencyCount);
}

Figure costOf(const ScoreRow& row) {
    return row.costCount < 1 ? Figure() : row.costSum / static_cast<double>(row.costCount);
}

// Verdicts where there are any, else ratings: the two are not mixed into one figure.
Figure qualityOf(const ScoreRow& row) {
    if (row.binaryJudged > 0)
        return static_cast<double>(row.binaryCorrect) / static_cast<double>(row.binaryJudged);
    if (row.ratingCount > 0)
        return static_cast<double>(row.ratingSum) / static_cast<double>(row.ratingCount) / 10;
    return {};
}

QString detailOf(const ScoreRow& row) {
    if (const auto percent = row.correctPercent())
        return ScorePointListModel::tr("%1% of %2").arg(*percent).arg(row.binaryJudged);
    return ScorePointListModel::tr("%1 / 10 of %2")
        .arg(static_cast<double>(row.ratingSum) / static_cast<double>(row.ratingCount), 0, 'f', 1)
        .arg(row.ratingCount);
}

QString spokenOf(const ScoreRow& row) {
    const QStringList cells = ScoreTableModel::cellsOf(row);
    return ScorePointListModel::tr("%1: correct %2, average score %3, time %4, cost %5")
        .arg(cells[ScoreTableModel::Model], cells[ScoreTableModel::Correct],
             cells[ScoreTableModel::AverageScore], cells[ScoreTableModel::Time],
             cells[ScoreTableModel::Cost]);
}

// What a scale goes from and to. Nothing at all costs nothing, and has no logarithm: it stands at the start.
struct Range {
    Figure lowest;
    Figure highest;

    void include(const Figure& figure) {
        if (!figure)
            return;
        lowest = lowest ? std::min(*lowest, *figure) : *figure;
        highest = highest ? std::max(*highest, *figure) : *figure;
    }

    // The start of the logarithmic part.
    [[nodiscard]] double start() const { return std::max(*lowest, *highest / 1e6); }

    [[nodiscard]] double place(const Figure& figure) const {
        if (!figure)
            return -1;
        if (*highest <= start())
            return 0.5; // all alike
        return std::log(std::max(*figure, start()) / start()) / std::log(*highest / start());
    }
};

// A line of words in a picture of the usual height.
constexpr double lineHeight = 0.075;

// Heights from the top, each as near as it can be to the one that is wanted without two lines overlapping.
std::vector<double> spread(const std::vector<double>& wanted) {
    std::vector<std::size_t> order(wanted.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t place) { return wanted[place]; });
    const double step =
        std::min(lineHeight, 1.0 / static_cast<double>(std::max<std::size_t>(order.size(), 1)));
    std::vector<double> heights = wanted;
    double least = 0;
    for (const std::size_t place : order) {
        heights[place] = std::max(wanted[place], least);
        least = heights[place] + step;
    }
    double most = 1;
    for (auto place = order.rbegin(); place != order.rend(); ++place) {
        heights[*place] = std::min(heights[*place], most);
        most = heights[*place] - step;
    }
    return heights;
}

QString timeText(const Figure& milliseconds) {
    return milliseconds ? toQString(Format::latency(static_cast<std::int64_t>(*milliseconds))) : QString();
}

QString costText(const Figure& dollars) {
    return dollars ? toQString(Format::cost(*dollars)) : QString();
}

} // namespace

void ScorePointListModel::setRows(std::span<const ScoreRow> overall) {
    Range time;
    Range cost;
    for (const ScoreRow& row : overall) {
        if (!qualityOf(row))
            continue;
        time.include(timeOf(row));
        cost.include(costOf(row));
    }
    std::vector<Point> next;
    for (const ScoreRow& row : overall) {
        const Figure quality = qualityOf(row);
        if (!quality)
            continue;
        next.push_back({.name = toQString(row.modelName),
                        .quality = std::clamp(*quality, 0.0, 1.0),
                        .timePlace = time.place(timeOf(row)),
                        .costPlace = cost.place(costOf(row)),
                        .detail = detailOf(row),
                        .spoken = spokenOf(row)});
    }
    placeLabels(next, &Point::timePlace, &Point::timeLabel);
    placeLabels(next, &Point::costPlace, &Point::costLabel);
    if (next == points)
        return;
    beginResetModel();
    points = std::move(next);
    times = {timeText(time.lowest), timeText(time.highest)};
    costs = {costText(cost.lowest), costText(cost.highest)};
    endResetModel();
    Q_EMIT changed();
}

// A point that is not in the picture takes no room.
void ScorePointListModel::placeLabels(std::vector<Point>& of, double Point::*place, double Point::*label) {
    std::vector<double> wanted;
    for (const Point& point : of) {
        if (point.*place >= 0)
            wanted.push_back(1 - point.quality);
    }
    const std::vector<double> heights = spread(wanted);
    auto height = heights.begin();
    for (Point& point : of) {
        if (point.*place >= 0)
            point.*label = *height++;
    }
}

int ScorePointListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ScorePointListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= count())
        return {};
    const Point& point = points[static_cast<std::size_t>(index.row())];
    switch (role) {
    case NameRole:
        return point.name;
    case QualityRole:
        return point.quality;
    case TimePlaceRole:
        return point.timePlace;
    case CostPlaceRole:
        return point.costPlace;
    case TimeLabelRole:
        return point.timeLabel;
    case CostLabelRole:
        return point.costLabel;
    case DetailRole:
        return point.detail;
    case SpokenRole:
        return point.spoken;
    default:
        return {};
    }
}

QHash<int, QByteArray> ScorePointListModel::roleNames() const {
    return {{NameRole, "name"},           {QualityRole, "quality"},     {TimePlaceRole, "timePlace"},
            {CostPlaceRole, "costPlace"}, {TimeLabelRole, "timeLabel"}, {CostLabelRole, "costLabel"},
            {DetailRole, "detail"},       {SpokenRole, "spoken"}};
}

} // namespace quorl
