#pragma once

#include "base/UUID.h"

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quorl {

// A list model of records that are known by their `id`. It is told how the rows should be and changes only
// those that differ, so that a view keeps its place, and each delegate its focus and selection. Thread: main.
// Failures: none.
template <class Record>
class RecordListModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows.size());
    }

    [[nodiscard]] std::optional<UUID> idAt(int row) const {
        if (row < 0 || row >= rowCount())
            return std::nullopt;
        return rows[static_cast<std::size_t>(row)].id;
    }

    /// -1 for none.
    [[nodiscard]] int rowOf(const std::optional<UUID>& id) const {
        const auto found =
            std::find_if(rows.begin(), rows.end(), [&](const Record& row) { return row.id == id; });
        return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
    }

    void setRows(std::span<const Record> next) {
        removeAllBut(next);
        for (std::size_t place = 0; place < next.size(); ++place) {
            if (place == rows.size() || rows[place].id != next[place].id)
                bring(next[place], place);
            if (rows[place] != next[place]) {
                rows[place] = next[place];
                const QModelIndex changed = index(static_cast<int>(place));
                Q_EMIT dataChanged(changed, changed);
            }
        }
    }

protected:
    std::vector<Record> rows;

private:
    void removeAllBut(std::span<const Record> next) {
        std::unordered_set<UUID> kept;
        for (const Record& record : next)
            kept.insert(record.id);
        for (std::size_t end = rows.size(); end > 0;) {
            std::size_t first = end;
            while (first > 0 && !kept.contains(rows[first - 1].id))
                --first;
            if (first < end) {
                beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end - 1));
                rows.erase(iterator(first), iterator(end));
                endRemoveRows();
            }
            end = first > 0 ? first - 1 : 0;
        }
    }

    // Puts the row of that record to its place: from further down, or new. All before it stand where they
    // should.
    void bring(const Record& record, std::size_t place) {
        const auto found =
            std::find_if(iterator(place), rows.end(), [&](const Record& row) { return row.id == record.id; });
        const int to = static_cast<int>(place);
        if (found == rows.end()) {
            beginInsertRows({}, to, to);
            rows.insert(iterator(place), record);
            endInsertRows();
            return;
        }
        const int from = static_cast<int>(found - rows.begin());
        beginMoveRows({}, from, from, {}, to);
        std::rotate(iterator(place), found, found + 1);
        endMoveRows();
    }

    auto iterator(std::size_t place) { return rows.begin() + static_cast<std::ptrdiff_t>(place); }
};

} // namespace quorl
