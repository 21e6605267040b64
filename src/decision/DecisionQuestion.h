#pragma once

#include "base/UUID.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The records of typed questions. Thread: any.
namespace quorl {

// Raw strings "choice", "score", "noul": one of several options, a place on an ordered scale, yes or no.
enum class DecisionQuestionType { choice, score, noul };

[[nodiscard]] std::string_view rawString(DecisionQuestionType);
[[nodiscard]] std::optional<DecisionQuestionType> decisionQuestionTypeFrom(std::string_view raw);

struct DecisionOption {
    UUID id; // identity for editing; never sent
    std::string label;
    std::string detail; // what the option means; may be empty

    bool operator==(const DecisionOption&) const = default;
};

// All field groups exist whatever the type, so that switching the type in the editor loses nothing.
struct DecisionQuestion {
    UUID id;
    std::string name; // optional short name, the source of the question's key
    DecisionQuestionType type = DecisionQuestionType::choice;
    std::string instructions;            // the question's text
    std::vector<DecisionOption> options; // of a choice
    std::vector<std::string> levels;     // of a score, from lowest to highest
    std::string yesMeans;                // of a noul; may be empty
    std::string noMeans;                 // of a noul; may be empty

    /// A new question: fresh identifiers, two blank options, two blank levels.
    [[nodiscard]] static DecisionQuestion starter();

    bool operator==(const DecisionQuestion&) const = default;
};

// The typed questions of each item of a batch, as the draft holds them: the wire form does not carry all.
using QuestionSnapshots = std::vector<std::vector<DecisionQuestion>>;

// One line of a bulk list.
struct BulkQuestion {
    UUID id = UUID::random();
    std::string text;

    bool operator==(const BulkQuestion&) const = default;
};

} // namespace quorl
