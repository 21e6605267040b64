#include "app/ScoreMath.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace quorl {

namespace {

// The longest path that is shown, and the end of the walk where categories are each other's parents.
constexpr std::size_t shownLevels = 8;

// Token counts are whatever an endpoint claims.
void addTo(std::int64_t& sum, std::int64_t value) {
    if (__builtin_add_overflow(sum, value, &sum))
        sum = value > 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

// Carries the low-order part that each addition loses (Neumaier 1974). A plain sum would depend on the order
// of the answers, and a table would change in its last digits with every run that comes in front.
class CompensatedSum {
public:
    void add(double value) {
        const double next = sum + value;
        if (std::abs(sum) >= std::abs(value))
            lost += (sum - next) + value;
        else
            lost += (value - next) + sum;
        sum = next;
    }

    // What is lost of an infinite sum is not a number.
    [[nodiscard]] double value() const { return std::isfinite(sum) ? sum + lost : sum; }

private:
    double sum = 0;
    double lost = 0;
};

struct GroupKey {
    UUID modelID;
    std::optional<UUID> categoryID; // absent where the table is not split, too

    bool operator==(const GroupKey&) const = default;
};

struct Group {
    GroupKey key;
    ScoreRow row;
    CompensatedSum cost;

    void add(const ScoreInput& input) {
        ++row.answers;
        if (input.accepted) {
            ++row.binaryJudged;
            row.binaryCorrect += *input.accepted ? 1 : 0;
        }
        if (input.rating) {
            addTo(row.ratingSum, *input.rating);
            ++row.ratingCount;
        }
        if (input.latencyMS > 0) {
            addTo(row.latencySum, input.latencyMS);
            ++row.latencyCount;
        }
        if (input.costUSD) {
            cost.add(*input.costUSD);
            ++row.costCount;
        }
        addTo(row.inputTokens, input.inputTokens.value_or(0));
        addTo(row.outputTokens, input.outputTokens.value_or(0));
    }
};

// Groups in the order in which they are made, found by key in an open-addressed table of their places:
// following a node for each of a million answers would take most of the time.
class Groups {
public:
    // Null if there is none.
    [[nodiscard]] Group* find(const GroupKey& key) {
        const std::size_t place = table[slotOf(key)];
        return place == nowhere ? nullptr : &groups[place];
    }

    // Only where `find` finds none.
    Group& add(Group group) {
        // At most half full.
        if ((groups.size() + 1) * 2 > table.size()) {
            table.assign(table.size() * 2, nowhere);
            for (std::size_t place = 0; place < groups.size(); ++place)
                table[slotOf(groups[place].key)] = place;
        }
        table[slotOf(group.key)] = groups.size();
        return groups.emplace_back(std::move(group));
    }

    [[nodiscard]] std::vector<Group>& all() { return groups; }

private:
    static constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

    // The slot of the key's group, or the empty one where it would stand.
    [[nodiscard]] std::size_t slotOf(const GroupKey& key) const {
        const std::size_t category = key.categoryID ? key.categoryID->hash() : 0;
        std::size_t hash = key.modelID.hash() ^ category * 0xC2B2AE3D27D4EB4Fu;
        hash = (hash * 0x9E3779B97F4A7C15u) >> 32;
        std::size_t slot = hash & (table.size() - 1);
        while (table[slot] != nowhere && !(groups[table[slot]].key == key))
            slot = (slot + 1) & (table.size() - 1);
        return slot;
    }

    std::vector<Group> groups;
    std::vector<std::size_t> table = std::vector(1024, nowhere); // always a power of two
};

const Category* findCategory(const UUID& id, std::span<const Category> categories) {
    const auto found = std::ranges::find(categories, id, &Category::id);
    return found == categories.end() ? nullptr : &*found;
}

// Nothing means that every answer is allowed.
std::optional<std::set<UUID>> allowedCategoryIDs(const std::optional<UUID>& filter,
                                                 ScoreMath::Subcategories subcategories,
                                                 std::span<const Category> categories) {
    if (!filter)
        return std::nullopt;
    if (subcategories == ScoreMath::Subcategories::included)
        return ScoreMath::descendantIDs(*filter, categories);
    return std::set{*filter};
}

bool counts(const ScoreInput& input, const std::optional<std::set<UUID>>& allowed) {
    if (input.state == AnswerState::running)
        return false;
    return !allowed || (input.categoryID && allowed->contains(*input.categoryID));
}

// `shownAs` stands for the category where the row is about all of them.
ScoreRow emptyRow(const ScoreInput& first, const std::optional<UUID>& categoryID,
                  std::span<const Category> categories, const std::optional<std::string>& shownAs) {
    ScoreRow row;
    row.id = first.modelID.text() + "|" + (categoryID ? categoryID->text() : shownAs.value_or("all"));
    row.modelID = first.modelID;
    row.modelName = first.modelName;
    row.categoryID = categoryID;
    row.categoryName = shownAs ? *shownAs : ScoreMath::categoryName(categoryID, categories);
    return row;
}

// By category, then by model. What the locale holds to be equal is told apart by bytes and by model: sorting
// needs an order without gaps, and a table must not be shuffled by the run that was made last.
bool standsBefore(const ScoreRow& left, const ScoreRow& right) {
    if (left.categoryName != right.categoryName) {
        if (Text::precedesIgnoringCase(left.categoryName, right.categoryName))
            return true;
        if (Text::precedesIgnoringCase(right.categoryName, left.categoryName))
            return false;
        return left.categoryName < right.categoryName;
    }
    if (Text::precedesIgnoringCase(left.modelName, right.modelName))
        return true;
    if (Text::precedesIgnoringCase(right.modelName, left.modelName))
        return false;
    return std::tie(left.modelID, left.categoryID) < std::tie(right.modelID, right.categoryID);
}

} // namespace

std::optional<std::int64_t> ScoreRow::correctPercent() const {
    if (binaryJudged < 1)
        return std::nullopt;
    return std::llround(static_cast<double>(binaryCorrect) / static_cast<double>(binaryJudged) * 100);
}

std::vector<ScoreRow> ScoreMath::rows(std::span<const ScoreInput> answers,
                                      std::span<const Category> categories,
                                      const std::optional<UUID>& categoryFilter, Subcategories subcategories,
                                      Split split) {
    const auto allowed = allowedCategoryIDs(categoryFilter, subcategories, categories);
    const bool isSplit = split == Split::byCategory;
    const auto shownAs =
        isSplit || categoryFilter ? std::nullopt : std::optional<std::string>("All categories");

    Groups groups;
    for (const ScoreInput& input : answers) {
        if (!counts(input, allowed))
            continue;
        const GroupKey key{input.modelID, isSplit ? input.categoryID : std::nullopt};
        Group* group = groups.find(key);
        if (!group) {
            const auto& categoryID = isSplit ? input.categoryID : categoryFilter;
            group = &groups.add({key, emptyRow(input, categoryID, categories, shownAs), {}});
        }
        group->add(input);
    }

    std::vector<ScoreRow> table;
    table.reserve(groups.all().size());
    for (Group& group : groups.all()) {
        group.row.costSum = group.cost.value();
        table.push_back(std::move(group.row));
    }
    std::ranges::sort(table, standsBefore);
    return table;
}

std::set<UUID> ScoreMath::descendantIDs(const UUID& of, std::span<const Category> categories) {
    std::set<UUID> found{of};
    std::vector<UUID> unvisited{of};
    while (!unvisited.empty()) {
        const UUID parentID = unvisited.back();
        unvisited.pop_back();
        for (const Category& category : categories) {
            // What was found before is not visited again: categories may be each other's parents.
            if (category.parentID == parentID && found.insert(category.id).second)
                unvisited.push_back(category.id);
        }
    }
    return found;
}

std::string ScoreMath::categoryName(const std::optional<UUID>& id, std::span<const Category> categories) {
    if (!id)
        return "Uncategorized";
    std::string path;
    const Category* category = findCategory(*id, categories);
    for (std::size_t level = 0; category && level < shownLevels; ++level) {
        path.insert(0, level == 0 ? category->name : category->name + " / ");
        category = category->parentID ? findCategory(*category->parentID, categories) : nullptr;
    }
    return path;
}

} // namespace quorl
