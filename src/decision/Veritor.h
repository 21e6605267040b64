#pragma once

#include "base/Json.h"
#include "decision/DecisionQuestion.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// The decision format: the rules for a set of typed questions, its stored form and its wire form. Pure
// functions. Thread: any.
namespace quorl::Veritor {

inline constexpr std::size_t maximumQuestions = 32;
inline constexpr std::size_t maximumOptions = 64;
inline constexpr std::size_t maximumLevels = 10;
inline constexpr std::size_t maximumBulkQuestions = 200;

/// The first problem of a state and its questions, as a sentence for the person who wrote them; nothing if
/// there is none.
[[nodiscard]] std::optional<std::string> validate(std::string_view state,
                                                  const std::vector<DecisionQuestion>& questions);

/// One question of each line of a list, all in the form of `templateQuestion`. Throws `StoreError` with the
/// first problem.
[[nodiscard]] std::vector<DecisionQuestion> bulkQuestions(std::string_view context,
                                                          const DecisionQuestion& templateQuestion,
                                                          const std::vector<BulkQuestion>& items);

/// The stored form: a JSON array of the records, keys sorted, compact. Empty text if a text is not UTF-8.
[[nodiscard]] std::string archive(const std::vector<DecisionQuestion>& questions);

/// The questions of a stored form; none if anything in it is unreadable.
[[nodiscard]] std::vector<DecisionQuestion> restore(std::string_view text);

/// The key under which a question is sent and answered: a slug of its name or else of its instructions, made
/// unlike those in `used`, to which it is added. Keys depend on the order, so one pass over a set of
/// questions uses one `used`.
[[nodiscard]] std::string questionKey(const DecisionQuestion& question, std::set<std::string>& used);

/// The wire form: an object that maps each question's key to its "type", "instructions" and "criteria".
[[nodiscard]] Json::Value wireMap(const std::vector<DecisionQuestion>& questions);

/// The wire form as text, sorted and compact. Nothing if a text is not UTF-8.
[[nodiscard]] std::optional<std::string> wireJSON(const std::vector<DecisionQuestion>& questions);

/// The questions of a wire form, in ascending order of their keys; nothing if any part is unacceptable. How
/// many and how unlike they may be is for `validate`.
[[nodiscard]] std::optional<std::vector<DecisionQuestion>> decodeWireQuestions(const Json::Value& value);

/// The stored form of a bulk list: a JSON array of objects with "id" and "text".
[[nodiscard]] std::string archiveBulk(const std::vector<BulkQuestion>& items);

/// Nothing if anything in it is unreadable.
[[nodiscard]] std::optional<std::vector<BulkQuestion>> restoreBulk(std::string_view text);

} // namespace quorl::Veritor
