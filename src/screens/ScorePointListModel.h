#pragma once

#include "app/ScoreMath.h"

#include <QAbstractListModel>
#include <QString>
#include <qqmlregistration.h>

#include <span>
#include <vector>

namespace quorl {

// The points of a picture of quality against cost and speed, one for each model that has been judged. Places
// are from 0 to 1: `quality` grows upwards; time and cost grow to the right on a logarithmic scale, since
// models differ by factors. Thread: main. Failures: none.
class ScorePointListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ScoresScreen")
    Q_PROPERTY(int count READ count NOTIFY changed)
    // The ends of the two scales, in words; empty where no point has that figure.
    Q_PROPERTY(QString shortestTime READ shortestTime NOTIFY changed)
    Q_PROPERTY(QString longestTime READ longestTime NOTIFY changed)
    Q_PROPERTY(QString lowestCost READ lowestCost NOTIFY changed)
    Q_PROPERTY(QString highestCost READ highestCost NOTIFY changed)

public:
    enum Role {
        NameRole = Qt::UserRole,
        QualityRole,
        TimePlaceRole, // -1 where it is not known
        CostPlaceRole, // the same
        TimeLabelRole, // the place of the words from the top: near the point, and clear of the others
        CostLabelRole,
        TimeSideRole, // whether they stand at the left of it
        CostSideRole,
        DetailRole, // "83% of 12", "7.8 / 10 of 9"
        SpokenRole, // all its figures
    };

    void setRows(std::span<const ScoreRow> overall);

    [[nodiscard]] int count() const { return static_cast<int>(points.size()); }
    [[nodiscard]] QString shortestTime() const { return times.lowest; }
    [[nodiscard]] QString longestTime() const { return times.highest; }
    [[nodiscard]] QString lowestCost() const { return costs.lowest; }
    [[nodiscard]] QString highestCost() const { return costs.highest; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();

private:
    struct Label {
        double fromTop = 0;
        bool isAtLeft = false;

        bool operator==(const Label&) const = default;
    };
    struct Point {
        QString name;
        double quality = 0;
        double timePlace = -1;
        double costPlace = -1;
        Label timeLabel;
        Label costLabel;
        QString detail;
        QString spoken;

        bool operator==(const Point&) const = default;
    };
    struct Scale {
        QString lowest;
        QString highest;
    };

    static void placeLabels(std::vector<Point>& of, double Point::*place, Label Point::*label);

    std::vector<Point> points;
    Scale times;
    Scale costs;
};

} // namespace quorl
