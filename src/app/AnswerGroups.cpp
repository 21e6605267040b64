#include "app/AnswerGroups.h"

#include <algorithm>
#include <utility>

namespace quorl {

namespace {

// The file gives them so, but for positions that are no integers; and a changed one may have a new position.
void sortByPosition(std::vector<ModelAnswer>& answers) {
    if (!std::ranges::is_sorted(answers, {}, &ModelAnswer::position))
        std::ranges::stable_sort(answers, {}, &ModelAnswer::position);
}

} // namespace

std::span<const ModelAnswer> AnswerGroups::ofRun(const UUID& runID) const {
    const auto slot = slotOf(runID);
    return slot ? std::span<const ModelAnswer>(groups[*slot].answers) : std::span<const ModelAnswer>();
}

const ModelAnswer* AnswerGroups::find(const UUID& answerID) const {
    const ModelAnswer* found = nullptr;
    answerIndex.forEachCandidate(answerID, [&](Slot slot) {
        const auto& answers = groups[slot].answers;
        const auto answer = std::ranges::find(answers, answerID, &ModelAnswer::id);
        if (!found && answer != answers.end())
            found = &*answer;
    });
    return found;
}

std::vector<UUID> AnswerGroups::runs() const {
    std::vector<UUID> ids;
    for (Slot slot = 0; slot < groups.end(); ++slot) {
        if (!groups[slot].answers.empty())
            ids.push_back(groups[slot].runID);
    }
    return ids;
}

std::vector<UUID> AnswerGroups::runsHolding(const UUID& answerID) const {
    std::vector<UUID> ids;
    answerIndex.forEachCandidate(answerID, [&](Slot slot) { ids.push_back(groups[slot].runID); });
    return ids;
}

bool AnswerGroups::put(const ModelAnswer& answer) {
    const Slot slot = slotOrNew(answer.runID);
    auto& answers = groups[slot].answers;
    const auto present = std::ranges::find(answers, answer.id, &ModelAnswer::id);
    if (present == answers.end()) {
        answers.push_back(answer);
        answerIndex.insert(answer.id, slot);
    } else if (*present == answer) {
        return false;
    } else {
        *present = answer;
    }
    sortByPosition(answers);
    return true;
}

bool AnswerGroups::removeRun(const UUID& runID) {
    const auto slot = slotOf(runID);
    if (!slot)
        return false;
    removeGroup(*slot);
    return true;
}

bool AnswerGroups::replaceRun(const UUID& runID, std::vector<ModelAnswer> answers) {
    if (answers.empty())
        return removeRun(runID);
    sortByPosition(answers);
    const Slot slot = slotOrNew(runID);
    auto& present = groups[slot].answers;
    if (present == answers)
        return false;
    for (const ModelAnswer& answer : present)
        answerIndex.erase(answer.id, slot);
    for (const ModelAnswer& answer : answers)
        answerIndex.insert(answer.id, slot);
    present = std::move(answers);
    present.shrink_to_fit();
    return true;
}

std::optional<Slot> AnswerGroups::slotOf(const UUID& runID) const {
    std::optional<Slot> found;
    groupIndex.forEachCandidate(runID, [&](Slot slot) {
        if (groups[slot].runID == runID)
            found = slot;
    });
    return found;
}

Slot AnswerGroups::slotOrNew(const UUID& runID) {
    if (const auto slot = slotOf(runID))
        return *slot;
    const Slot slot = groups.insert({});
    groups[slot].runID = runID;
    groupIndex.insert(runID, slot);
    return slot;
}

void AnswerGroups::removeGroup(Slot slot) {
    dropFrom(slot, 0);
    groupIndex.erase(groups[slot].runID, slot);
    groups.erase(slot);
}

void AnswerGroups::dropFrom(Slot slot, std::size_t place) {
    auto& answers = groups[slot].answers;
    for (std::size_t i = place; i < answers.size(); ++i)
        answerIndex.erase(answers[i].id, slot);
    answers.erase(answers.begin() + static_cast<std::ptrdiff_t>(place), answers.end());
}

void AnswerGroups::Refill::expect(const UUID& runID, std::size_t count) {
    expectedIndex.insert(runID, static_cast<Slot>(expected.size()));
    expected.push_back({runID, count});
    expectedInAll += count;
}

std::size_t AnswerGroups::Refill::expectedOf(const UUID& runID) const {
    std::size_t count = 0;
    expectedIndex.forEachCandidate(runID, [&](Slot place) {
        if (expected[place].runID == runID)
            count = expected[place].count;
    });
    return count;
}

void AnswerGroups::Refill::add(ModelAnswer&& answer) {
    if (expectedInAll > 0)
        groups.answerIndex.reserve(std::exchange(expectedInAll, 0));
    const auto present = groups.slotOf(answer.runID);
    const Slot slot = present ? *present : groups.slotOrNew(answer.runID);
    if (!present)
        groups.groups[slot].answers.reserve(expectedOf(answer.runID));
    Group& group = groups.groups[slot];
    if (group.refilled == group.answers.size()) {
        groups.answerIndex.insert(answer.id, slot);
        group.answers.push_back(std::move(answer));
        group.differs = true;
    } else if (ModelAnswer& old = group.answers[group.refilled]; old != answer) {
        if (old.id != answer.id) {
            groups.answerIndex.erase(old.id, slot);
            groups.answerIndex.insert(answer.id, slot);
        }
        old = std::move(answer);
        group.differs = true;
    }
    ++group.refilled;
}

std::vector<UUID> AnswerGroups::Refill::finish() {
    std::vector<UUID> changed;
    for (Slot slot = 0; slot < groups.groups.end(); ++slot) {
        Group& group = groups.groups[slot];
        if (group.answers.empty())
            continue; // the slot of a group that was removed before
        if (group.refilled == 0) {
            changed.push_back(group.runID);
            groups.removeGroup(slot);
            continue;
        }
        if (group.refilled < group.answers.size()) {
            groups.dropFrom(slot, group.refilled);
            group.differs = true;
        }
        if (group.differs) {
            sortByPosition(group.answers);
            changed.push_back(group.runID);
        }
        group.refilled = 0;
        group.differs = false;
    }
    return changed;
}

} // namespace quorl
