#include "screens/ScorePointListModel.h"

#include "base/Format.h"
#include "screens/ScoreTableModel.h"
#include "screens/Strings.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace quorl {

namespace {

using Figure = std::optional<double>;

Figure timeOf(const ScoreRow& row) {
    if (row.latencyCount < 1)
        return {};
    const std::int64_t milliseconds = row.latencySum / row.latencyCount; // as the tables have it
    return static_cast<double>(milliseconds);
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
        .arg(ScoreTableModel::cellsOf(row)[ScoreTableModel::AverageScore])
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

// What things take of a picture, from 0 to 1, where it is as narrow as it gets.
constexpr double lineHeight = 0.075;
constexpr double characterWidth = 0.022;
constexpr double widestWords = 0.6; // which are cut short
constexpr double dotReach = 0.03;   // to either side
constexpr double labelDistance = 0.035;

struct Box {
    double left;
    double right;
    double top;
    double bottom;

    [[nodiscard]] bool overlaps(const Box& other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
    [[nodiscard]] bool isInside() const { return left >= 0 && right <= 1; }
};

Box dotBox(double place, double quality) {
    return {place - dotReach, place + dotReach, 1 - quality - lineHeight / 2, 1 - quality + lineHeight / 2};
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
                        .timeLabel = {},
                        .costLabel = {},
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

// Each label stands as near to its point as it can without covering another one's words or dot. A point that
// is not in the picture takes no room.
void ScorePointListModel::placeLabels(std::vector<Point>& of, double Point::*place, Label Point::*label) {
    std::vector<Box> taken;
    for (const Point& point : of) {
        if (point.*place >= 0)
            taken.push_back(dotBox(point.*place, point.quality));
    }
    const auto boxOf = [place](const Point& point, const Label& at) {
        const auto characters = static_cast<double>(point.name.size() + point.detail.size() + 2);
        const double width = std::min(characters * characterWidth, widestWords);
        const double start = point.*place + (at.isAtLeft ? -labelDistance - width : labelDistance);
        return Box{start, start + width, at.fromTop - lineHeight / 2, at.fromTop + lineHeight / 2};
    };
    const auto isFree = [&](const Box& box) {
        return box.isInside() &&
               std::ranges::none_of(taken, [&](const Box& other) { return box.overlaps(other); });
    };
    const auto labelOf = [&](const Point& point) {
        const double height = 1 - point.quality;
        const bool isAtRightEdge = point.*place > 0.5;
        for (std::size_t steps = 0; steps <= of.size(); ++steps) {
            const double away = static_cast<double>(steps) * lineHeight;
            for (const double fromTop : {height - away, height + away}) {
                for (const bool isAtLeft : {isAtRightEdge, !isAtRightEdge}) {
                    const Label candidate{fromTop, isAtLeft};
                    if (fromTop >= 0 && fromTop <= 1 && isFree(boxOf(point, candidate)))
                        return candidate;
                }
            }
        }
        return Label{height, isAtRightEdge};
    };
    for (Point& point : of) {
        if (point.*place < 0)
            continue;
        point.*label = labelOf(point);
        taken.push_back(boxOf(point, point.*label));
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
        return point.timeLabel.fromTop;
    case CostLabelRole:
        return point.costLabel.fromTop;
    case TimeSideRole:
        return point.timeLabel.isAtLeft;
    case CostSideRole:
        return point.costLabel.isAtLeft;
    case DetailRole:
        return point.detail;
    case SpokenRole:
        return point.spoken;
    default:
        return {};
    }
}

QHash<int, QByteArray> ScorePointListModel::roleNames() const {
    return {{NameRole, "name"},
            {QualityRole, "quality"},
            {TimePlaceRole, "timePlace"},
            {CostPlaceRole, "costPlace"},
            {TimeLabelRole, "timeLabel"},
            {CostLabelRole, "costLabel"},
            {TimeSideRole, "isTimeLabelAtLeft"},
            {CostSideRole, "isCostLabelAtLeft"},
            {DetailRole, "detail"},
            {SpokenRole, "spoken"}};
}

} // namespace quorl
