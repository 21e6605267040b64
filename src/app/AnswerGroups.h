#pragma once

#include "app/IDIndex.h"
#include "app/Slab.h"
#include "domain/Records.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace quorl {

// The mirror of the answers, grouped by run, each group by `position`. A group and an answer are found by id
// without a walk. What is given out is valid until the next change to its run. Thread: main. Failures: none.
class AnswerGroups {
public:
    /// None for an unknown run.
    [[nodiscard]] std::span<const ModelAnswer> ofRun(const UUID& runID) const;
    [[nodiscard]] const ModelAnswer* find(const UUID& answerID) const;
    /// The runs that have answers, in no particular order; those that have this one.
    [[nodiscard]] std::vector<UUID> runs() const;
    [[nodiscard]] std::vector<UUID> runsHolding(const UUID& answerID) const;

    /// Puts the answer in the place of the one with its id in its run, or at the end if there is none. True
    /// if that made a difference, as for the two below.
    bool put(const ModelAnswer& answer);
    bool removeRun(const UUID& runID);
    bool replaceRun(const UUID& runID, std::vector<ModelAnswer> answers);

    // Takes the whole table, answer by answer in the order of the file, over what is there: an answer that is
    // the same stays where it is, so that the table never stands in memory twice.
    class Refill;

private:
    struct Group {
        UUID runID;
        std::vector<ModelAnswer> answers; // never empty in a group that is used
        std::uint32_t refilled = 0;
        bool differs = false;
    };

    [[nodiscard]] std::optional<Slot> slotOf(const UUID& runID) const;
    Slot slotOrNew(const UUID& runID);
    void removeGroup(Slot slot);
    void dropFrom(Slot slot, std::size_t place);

    Slab<Group> groups;
    IDIndex groupIndex;  // by run
    IDIndex answerIndex; // by answer, to its group's slot
};

class AnswerGroups::Refill {
public:
    explicit Refill(AnswerGroups& refilled) : groups(refilled) {}

    /// Makes room for the answers of a run, before the first of them comes.
    void expect(const UUID& runID, std::size_t count);
    void add(ModelAnswer&& answer);
    /// Removes what did not come. Answers the runs whose answers are not what they were.
    [[nodiscard]] std::vector<UUID> finish();

private:
    struct Expected {
        UUID runID;
        std::size_t count;
    };

    [[nodiscard]] std::size_t expectedOf(const UUID& runID) const;

    AnswerGroups& groups;
    // Not made as groups at once: these stand in memory in the order in which their first answers come, and
    // the next ones come in the same order.
    std::vector<Expected> expected;
    IDIndex expectedIndex;
    std::size_t expectedInAll = 0;
};

} // namespace quorl
