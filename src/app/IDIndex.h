#pragma once

#include "app/Slab.h"
#include "base/UUID.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace quorl {

// Finds slots by identifier, in about ten bytes each: an open-addressed table that holds half a hash and the
// slot, while the identifier stays with the record. What it finds are candidates, which the caller compares.
// An identifier may stand more than once. Thread: main. Failures: none.
class IDIndex {
public:
    /// Makes room, so that so many entries come in without a growth.
    void reserve(std::size_t entries) {
        const std::size_t wanted = entries + entries / 4 + 1;
        if (wanted > table.size())
            rehash(wanted);
    }

    void insert(const UUID& id, Slot slot) {
        // Past this load the probes get long.
        if ((count + 1) * 8 > table.size() * 7)
            rehash(table.size() + table.size() / 2 + 16);
        place({hashOf(id), slot});
        ++count;
    }

    void erase(const UUID& id, Slot slot) {
        if (table.empty())
            return;
        const std::uint32_t hash = hashOf(id);
        for (std::size_t at = home(hash); table[at].slot != nowhere; at = next(at)) {
            if (table[at].hash == hash && table[at].slot == slot) {
                close(at);
                --count;
                return;
            }
        }
    }

    /// Calls `visit(slot)` with every slot that may be of that identifier.
    template <class Visit>
    void forEachCandidate(const UUID& id, Visit visit) const {
        if (table.empty())
            return;
        const std::uint32_t hash = hashOf(id);
        for (std::size_t at = home(hash); table[at].slot != nowhere; at = next(at)) {
            if (table[at].hash == hash)
                visit(table[at].slot);
        }
    }

    void clear() {
        table.clear();
        count = 0;
    }

private:
    static constexpr Slot nowhere = std::numeric_limits<Slot>::max();

    struct Entry {
        std::uint32_t hash = 0;
        Slot slot = nowhere;
    };

    // Identifiers need not be random, so that the halves are mixed once more and the upper bits are taken.
    static std::uint32_t hashOf(const UUID& id) {
        return static_cast<std::uint32_t>((id.hash() * 0x9E3779B97F4A7C15u) >> 32);
    }

    // Multiplying instead of masking lets the table have any size.
    [[nodiscard]] std::size_t home(std::uint32_t hash) const { return (hash * table.size()) >> 32; }
    [[nodiscard]] std::size_t next(std::size_t at) const { return at + 1 == table.size() ? 0 : at + 1; }
    [[nodiscard]] std::size_t distance(std::size_t from, std::size_t to) const {
        return to >= from ? to - from : to + table.size() - from;
    }

    void place(Entry entry) {
        std::size_t at = home(entry.hash);
        while (table[at].slot != nowhere)
            at = next(at);
        table[at] = entry;
    }

    // Empties a place and moves what was pushed past it back, so that no search ends too early.
    void close(std::size_t hole) {
        for (std::size_t at = next(hole); table[at].slot != nowhere; at = next(at)) {
            if (distance(home(table[at].hash), at) >= distance(hole, at)) {
                table[hole] = table[at];
                hole = at;
            }
        }
        table[hole] = Entry{};
    }

    void rehash(std::size_t size) {
        std::vector<Entry> old(size);
        old.swap(table);
        for (const Entry& entry : old) {
            if (entry.slot != nowhere)
                place(entry);
        }
    }

    std::vector<Entry> table;
    std::size_t count = 0;
};

} // namespace quorl
