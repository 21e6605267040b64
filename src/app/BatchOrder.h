#pragma once

#include "base/Attempt.h"
#include "base/Json.h"
#include "decision/DecisionQuestion.h"
#include "domain/Enumerations.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorl {

struct BatchItem {
    std::string prompt;                      // trimmed
    std::string system;                      // empty for a decision
    std::vector<DecisionQuestion> questions; // none for a generation
};

// What a JSON body asks a batch to be, with its items and the names of its models still as they were sent:
// which models answer is to be known before the first item is looked at, so that a client is told of its
// mistakes in that order.
struct BatchOrder {
    Json::Value body;
    QuorlKind kind = QuorlKind::decision;
    std::string name;
    std::string category;    // trimmed, as the next
    std::string subcategory; // empty where the category is
    ScoringMode scoring = ScoringMode::binary;

    [[nodiscard]] const Json::Value* models() const { return Json::find(body, "models"); }
};

/// Thread: any, as for the next. Failures: a sentence for the client, of the first thing that is wrong.
[[nodiscard]] Attempt<BatchOrder> readBatchOrder(std::string_view body,
                                                 const std::optional<QuestionSnapshots>& snapshots);

/// The items in their order; with `snapshots`, those of `readBatchOrder`, the items' own questions are not
/// read.
[[nodiscard]] Attempt<std::vector<BatchItem>>
readBatchItems(const BatchOrder& order, const std::optional<QuestionSnapshots>& snapshots);

} // namespace quorl
