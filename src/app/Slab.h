#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace quorl {

// The number under which a record is kept in a `Slab`.
using Slot = std::uint32_t;

// Records under small numbers: a record stays where it is in memory until it is erased, and the next one
// takes its number. Thread: main. Failures: none.
template <class Record>
class Slab {
public:
    [[nodiscard]] const Record& operator[](Slot slot) const {
        return (*blocks[slot / blockSize])[slot % blockSize];
    }
    [[nodiscard]] Record& operator[](Slot slot) { return (*blocks[slot / blockSize])[slot % blockSize]; }

    Slot insert(Record record) {
        if (!freed.empty()) {
            const Slot slot = freed.back();
            freed.pop_back();
            (*this)[slot] = std::move(record);
            return slot;
        }
        if (used == blocks.size() * blockSize)
            blocks.push_back(std::make_unique<Block>());
        const Slot slot = used++;
        (*this)[slot] = std::move(record);
        return slot;
    }

    void erase(Slot slot) {
        (*this)[slot] = Record{}; // gives back what it held on the heap
        freed.push_back(slot);
    }

    void clear() {
        blocks.clear();
        freed.clear();
        used = 0;
    }

    /// All slots there ever were, erased ones with an empty record included.
    [[nodiscard]] Slot end() const { return used; }

private:
    static constexpr Slot blockSize = 256;
    using Block = std::array<Record, blockSize>;

    std::vector<std::unique_ptr<Block>> blocks;
    std::vector<Slot> freed;
    Slot used = 0;
};

} // namespace quorl
