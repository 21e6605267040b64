#pragma once

#include "app/IDIndex.h"
#include "app/Slab.h"
#include "base/UUID.h"
#include "store/QuorlStore.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quorl {

// For a list that is looked up by nothing but `id`.
template <class Record>
struct Ungrouped {
    void add(const Record&, Slot) {}
    void remove(const Record&, Slot) {}
    void clear() {}
};

// The mirror of a table that is listed by `createdAt`, newest first. A record is found by its `id` and by its
// place without a walk, and putting one in front or taking one out moves nothing but numbers of four bytes.
// `Grouping` is told of every record that comes and goes. A record keeps its address until it is removed.
// Thread: main. Failures: none.
template <class Record, class Grouping = Ungrouped<Record>>
class DatedList {
public:
    using value_type = Record;

    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Record;
        using difference_type = std::ptrdiff_t;
        using pointer = const Record*;
        using reference = const Record&;

        const_iterator() = default;
        const_iterator(const DatedList* iterated, std::size_t from) : list(iterated), place(from) {}

        reference operator*() const { return (*list)[place]; }
        pointer operator->() const { return &(*list)[place]; }
        const_iterator& operator++() {
            ++place;
            return *this;
        }
        const_iterator operator++(int) {
            auto before = *this;
            ++place;
            return before;
        }
        bool operator==(const const_iterator& other) const { return place == other.place; }

    private:
        const DatedList* list = nullptr;
        std::size_t place = 0;
    };
    using iterator = const_iterator;

    [[nodiscard]] std::size_t size() const { return oldestFirst.size(); }
    [[nodiscard]] bool empty() const { return oldestFirst.empty(); }
    [[nodiscard]] const Record& operator[](std::size_t place) const {
        return records[oldestFirst[size() - 1 - place]];
    }
    [[nodiscard]] const Record& front() const { return (*this)[0]; }
    [[nodiscard]] const_iterator begin() const { return {this, 0}; }
    [[nodiscard]] const_iterator end() const { return {this, size()}; }

    /// The first with that id; null if there is none.
    [[nodiscard]] const Record* find(const UUID& id) const {
        const auto slots = slotsOf(id);
        return slots.empty() ? nullptr : &records[slots.front()];
    }

    [[nodiscard]] const Record& inSlot(Slot slot) const { return records[slot]; }
    [[nodiscard]] std::size_t placeOf(Slot slot) const { return size() - 1 - positionOf(slot); }
    [[nodiscard]] const Grouping& groups() const { return grouping; }

    /// False if an id stands twice, which only a foreign hand can bring about.
    [[nodiscard]] bool idsAreUnique() const { return unique; }

    /// Puts a record in front, whatever its date.
    void prepend(Record record) { oldestFirst.push_back(add(std::move(record))); }

    /// Replaces the first with that id, in its place. True if that made a difference.
    bool replace(const Record& record) {
        const auto slots = slotsOf(record.id);
        if (slots.empty() || records[slots.front()] == record)
            return false;
        assign(slots.front(), record);
        return true;
    }

    /// Removes every record with that id. True if there was one.
    bool remove(const UUID& id) {
        const auto slots = slotsOf(id);
        for (const Slot slot : slots)
            take(slot);
        return !slots.empty();
    }

    /// Takes the whole table, newest first. True if that made a difference.
    bool reset(std::vector<Record> newestFirst) {
        if (std::equal(begin(), end(), newestFirst.begin(), newestFirst.end()))
            return false;
        records.clear();
        index.clear();
        oldestFirst.clear();
        grouping.clear();
        unique = true;
        index.reserve(newestFirst.size());
        oldestFirst.reserve(newestFirst.size());
        for (auto record = newestFirst.rbegin(); record != newestFirst.rend(); ++record) {
            unique = unique && slotsOf(record->id).empty();
            oldestFirst.push_back(add(std::move(*record)));
        }
        return true;
    }

    /// Takes over what the file now holds under `ids`, where all others stand as in the file. `rows` are
    /// those that exist; `rowIDOf(id)` tells the number of a row's row, by which rows of the same date are
    /// ordered. Answers the ids of the records that came, went, changed or moved among the others.
    template <class RowIDOf>
    [[nodiscard]] std::vector<UUID> update(const std::unordered_set<UUID>& ids,
                                           std::vector<FiledRow<Record>> rows, RowIDOf rowIDOf);

private:
    // A record that stays: where it stood, and what its row holds now.
    struct Staying {
        Slot slot;
        std::size_t position;
        FiledRow<Record>* row;
        bool differs;
    };

    // In the order of the list; more than one only where an id stands twice.
    [[nodiscard]] std::vector<Slot> slotsOf(const UUID& id) const {
        std::vector<Slot> slots;
        index.forEachCandidate(id, [&](Slot slot) {
            if (records[slot].id == id)
                slots.push_back(slot);
        });
        if (slots.size() > 1)
            std::ranges::sort(slots, {}, [this](Slot slot) { return placeOf(slot); });
        return slots;
    }

    // The first position whose record is not older than `date`, or with `Same::older` the first whose record
    // is newer. The list need not be in order where memory went ahead of the file, and then the answer is
    // some position.
    enum class Same { newer, older };
    [[nodiscard]] std::size_t firstNewer(Date date, Same same) const {
        std::size_t low = 0;
        std::size_t high = size();
        while (low < high) {
            const std::size_t middle = low + (high - low) / 2;
            const Date there = records[oldestFirst[middle]].createdAt;
            if (there < date || (same == Same::older && there == date))
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    }

    [[nodiscard]] std::size_t positionOf(Slot slot) const {
        const auto at = [this](std::size_t position) {
            return oldestFirst.begin() + static_cast<std::ptrdiff_t>(position);
        };
        const Date date = records[slot].createdAt;
        const auto end = at(firstNewer(date, Same::older));
        auto found = std::find(at(firstNewer(date, Same::newer)), end, slot);
        // Not there if it was put in front of the list with a date that is older than others'.
        if (found == end)
            found = std::ranges::find(oldestFirst, slot);
        return static_cast<std::size_t>(found - oldestFirst.begin());
    }

    Slot add(Record record) {
        const Slot slot = records.insert(std::move(record));
        index.insert(records[slot].id, slot);
        grouping.add(records[slot], slot);
        return slot;
    }

    void assign(Slot slot, Record record) {
        grouping.remove(records[slot], slot);
        records[slot] = std::move(record);
        grouping.add(records[slot], slot);
    }

    void take(Slot slot) {
        oldestFirst.erase(oldestFirst.begin() + static_cast<std::ptrdiff_t>(positionOf(slot)));
        grouping.remove(records[slot], slot);
        index.erase(records[slot].id, slot);
        records.erase(slot);
    }

    // Whether its neighbours are older and newer beyond doubt.
    [[nodiscard]] bool standsRight(std::size_t position) const {
        const Date date = records[oldestFirst[position]].createdAt;
        return (position == 0 || records[oldestFirst[position - 1]].createdAt < date) &&
               (position + 1 == size() || date < records[oldestFirst[position + 1]].createdAt);
    }

    template <class RowIDOf>
    void insertInOrder(Slot slot, std::int64_t rowID, RowIDOf& rowIDOf) {
        const Date date = records[slot].createdAt;
        std::size_t low = firstNewer(date, Same::newer);
        std::size_t high = firstNewer(date, Same::older);
        // Of the same date, the row with the smaller number is listed first, and so stands last here.
        while (low < high) {
            const std::size_t middle = low + (high - low) / 2;
            if (rowIDOf(records[oldestFirst[middle]].id) > rowID)
                low = middle + 1;
            else
                high = middle;
        }
        oldestFirst.insert(oldestFirst.begin() + static_cast<std::ptrdiff_t>(low), slot);
    }

    // In one pass, however many they are.
    void takeOutOfOrder(const std::vector<Staying>& staying) {
        std::vector<std::size_t> positions;
        positions.reserve(staying.size());
        for (const Staying& one : staying)
            positions.push_back(one.position);
        std::ranges::sort(positions);
        auto kept = oldestFirst.begin() + static_cast<std::ptrdiff_t>(positions.front());
        for (std::size_t i = 0; i < positions.size(); ++i) {
            const std::size_t until = i + 1 < positions.size() ? positions[i + 1] : size();
            kept = std::copy(oldestFirst.begin() + static_cast<std::ptrdiff_t>(positions[i]) + 1,
                             oldestFirst.begin() + static_cast<std::ptrdiff_t>(until), kept);
        }
        oldestFirst.erase(kept, oldestFirst.end());
    }

    Slab<Record> records;
    IDIndex index;
    std::vector<Slot> oldestFirst; // a new record comes at the end, where a vector takes it for nothing
    Grouping grouping;
    bool unique = true;
};

template <class Record, class Grouping>
template <class RowIDOf>
std::vector<UUID> DatedList<Record, Grouping>::update(const std::unordered_set<UUID>& ids,
                                                      std::vector<FiledRow<Record>> rows, RowIDOf rowIDOf) {
    std::vector<UUID> changed;
    std::unordered_map<UUID, FiledRow<Record>*> filed;
    for (auto& row : rows)
        filed.emplace(row.record.id, &row);

    for (const UUID& id : ids) {
        const auto slots = slotsOf(id);
        const std::size_t kept = filed.contains(id) && !slots.empty() ? 1 : 0;
        for (std::size_t i = kept; i < slots.size(); ++i)
            take(slots[i]);
        if (slots.size() > kept)
            changed.push_back(id);
    }

    std::vector<Staying> staying;
    std::vector<FiledRow<Record>*> coming;
    for (auto& row : rows) {
        if (const auto slots = slotsOf(row.record.id); !slots.empty())
            staying.push_back(
                {slots.front(), positionOf(slots.front()), &row, records[slots.front()] != row.record});
        else
            coming.push_back(&row);
    }
    for (const Staying& one : staying) {
        if (one.differs)
            assign(one.slot, one.row->record);
    }
    const bool allStandRight =
        std::ranges::all_of(staying, [this](const Staying& one) { return standsRight(one.position); });
    if (!allStandRight) {
        takeOutOfOrder(staying);
        for (const Staying& one : staying)
            insertInOrder(one.slot, one.row->rowID, rowIDOf);
    }
    for (const Staying& one : staying) {
        if (one.differs || (!allStandRight && positionOf(one.slot) != one.position))
            changed.push_back(one.row->record.id);
    }

    for (FiledRow<Record>* row : coming) {
        changed.push_back(row->record.id);
        insertInOrder(add(std::move(row->record)), row->rowID, rowIDOf);
    }
    return changed;
}

} // namespace quorl
