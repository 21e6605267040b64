#pragma once

#include "domain/Records.h"

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace quorl {

// One answer, flattened for counting.
struct ScoreInput {
    UUID modelID;
    std::string modelName;
    std::optional<UUID> categoryID; // its run's
    AnswerState state = AnswerState::running;
    std::optional<bool> accepted;
    std::optional<std::int64_t> rating;
    std::int64_t latencyMS = 0;
    std::optional<double> costUSD;
    std::optional<std::int64_t> inputTokens;
    std::optional<std::int64_t> outputTokens;

    bool operator==(const ScoreInput&) const = default;
};

// One line of a score table: counts and sums alone, so that it stays exact; averages are taken when shown.
struct ScoreRow {
    std::string id; // tells the rows of one table apart
    UUID modelID;
    std::string modelName; // as the first answer has it, whatever the model is called now
    std::optional<UUID> categoryID;
    std::string categoryName; // as it is shown
    std::int64_t answers = 0;
    std::int64_t binaryJudged = 0;
    std::int64_t binaryCorrect = 0;
    std::int64_t ratingSum = 0;
    std::int64_t ratingCount = 0;
    std::int64_t latencySum = 0;   // milliseconds, over answers that took any
    std::int64_t latencyCount = 0; // of those
    double costSum = 0;            // US dollars
    std::int64_t costCount = 0;    // answers whose cost is known
    std::int64_t inputTokens = 0;
    std::int64_t outputTokens = 0;

    /// 0 to 100, halves away from zero; absent where nothing was judged. Ratings have no part in it.
    [[nodiscard]] std::optional<std::int64_t> correctPercent() const;

    bool operator==(const ScoreRow&) const = default;
};

// What judged answers add up to. Thread: any. Failures: none; a sum that 64 bits cannot hold stays at the
// limit.
namespace ScoreMath {

enum class Subcategories { leftOut, included };
enum class Split { none, byCategory };

/// One row per model, or per model and category, by category and then by model, in the order of the user's
/// locale. Answers in the same order or in another give the same rows, except that a model which was renamed
/// goes by the name in its first answer. Running answers do not count, failed ones do. With a filter, answers
/// without a category do not count.
[[nodiscard]] std::vector<ScoreRow> rows(std::span<const ScoreInput> answers,
                                         std::span<const Category> categories,
                                         const std::optional<UUID>& categoryFilter,
                                         Subcategories subcategories, Split split);

/// The id itself and all below it.
[[nodiscard]] std::set<UUID> descendantIDs(const UUID& of, std::span<const Category> categories);

/// The path as it is shown, "Root / Leaf"; "Uncategorized" for no id, the empty text for an unknown one.
[[nodiscard]] std::string categoryName(const std::optional<UUID>& id, std::span<const Category> categories);

} // namespace ScoreMath

} // namespace quorl
