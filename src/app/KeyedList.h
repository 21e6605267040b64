#pragma once

#include "app/IDIndex.h"
#include "base/UUID.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace quorl {

// The mirror of a small table in the order of the file, whose records are found by `id` without a walk.
// Thread: main. Failures: none.
template <class Record>
class KeyedList {
public:
    [[nodiscard]] const std::vector<Record>& all() const { return records; }

    /// The first with that id; null if there is none.
    [[nodiscard]] const Record* find(const UUID& id) const {
        const auto place = placeOf(id);
        return place ? &records[*place] : nullptr;
    }

    void append(Record record) {
        index.insert(record.id, static_cast<Slot>(records.size()));
        records.push_back(std::move(record));
    }

    /// Replaces the first with that id, in its place. True if that made a difference, as for the two below.
    bool replace(const Record& record) {
        const auto place = placeOf(record.id);
        if (!place || records[*place] == record)
            return false;
        records[*place] = record;
        return true;
    }

    /// Removes every record with that id.
    bool remove(const UUID& id) {
        if (!placeOf(id))
            return false;
        std::erase_if(records, [&](const Record& record) { return record.id == id; });
        indexAll();
        return true;
    }

    bool reset(std::vector<Record> next) {
        if (next == records)
            return false;
        records = std::move(next);
        indexAll();
        return true;
    }

private:
    [[nodiscard]] std::optional<Slot> placeOf(const UUID& id) const {
        std::optional<Slot> first;
        index.forEachCandidate(id, [&](Slot place) {
            if (records[place].id == id && (!first || place < *first))
                first = place;
        });
        return first;
    }

    void indexAll() {
        index.clear();
        index.reserve(records.size());
        for (std::size_t place = 0; place < records.size(); ++place)
            index.insert(records[place].id, static_cast<Slot>(place));
    }

    std::vector<Record> records;
    IDIndex index;
};

} // namespace quorl
