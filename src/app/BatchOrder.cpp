#include "app/BatchOrder.h"

#include "base/Text.h"
#include "decision/Veritor.h"

#include <algorithm>

namespace quorl {

namespace {

constexpr std::size_t maximumItems = 200;

// Empty where there is no such text.
std::string_view trimmedText(const Json::Value& object, std::string_view key) {
    const std::string* text = Json::text(Json::find(object, key));
    return text ? Text::trimmed(*text) : std::string_view();
}

std::string textOr(const Json::Value& object, std::string_view key, const std::string& otherwise) {
    const std::string* text = Json::text(Json::find(object, key));
    return text ? *text : otherwise;
}

// Nothing for a kind that does not exist.
std::optional<QuorlKind> readKind(const Json::Value& body) {
    const std::string* raw = Json::text(Json::find(body, "kind"));
    return raw ? quorlKindFrom(*raw) : QuorlKind::decision;
}

// Null unless all of them are objects.
const Json::Value* itemsOf(const Json::Value& body) {
    const Json::Value* items = Json::array(Json::find(body, "items"));
    const bool areObjects =
        items && std::ranges::all_of(*items, [](const Json::Value& item) { return item.is_object(); });
    return areObjects ? items : nullptr;
}

std::string_view promptOf(const Json::Value& item) {
    const bool hasState = Json::text(Json::find(item, "state"));
    return trimmedText(item, hasState ? "state" : "prompt");
}

Attempt<BatchItem> readDecision(const Json::Value& item, const std::string& name,
                                const std::vector<DecisionQuestion>* snapshot) {
    using Result = Attempt<BatchItem>;
    BatchItem read{std::string(promptOf(item)), "", {}};
    if (snapshot) {
        read.questions = *snapshot;
    } else {
        const Json::Value none;
        const Json::Value* sent = Json::find(item, "questions");
        auto questions = Veritor::decodeWireQuestions(sent ? *sent : none);
        if (!questions)
            return Result::failure(name + " needs Veritor questions.");
        read.questions = std::move(*questions);
    }
    if (const auto problem = Veritor::validate(read.prompt, read.questions))
        return Result::failure(name + ": " + *problem);
    return Result::success(std::move(read));
}

Attempt<BatchItem> readGeneration(const Json::Value& item, const std::string& name,
                                  const std::string& batchSystem) {
    using Result = Attempt<BatchItem>;
    const std::string_view prompt = promptOf(item);
    if (prompt.empty())
        return Result::failure(name + " needs a prompt.");
    return Result::success({std::string(prompt), textOr(item, "system", batchSystem), {}});
}

} // namespace

Attempt<BatchOrder> readBatchOrder(std::string_view body, const std::optional<QuestionSnapshots>& snapshots) {
    using Result = Attempt<BatchOrder>;
    auto object = Json::parseObject(body);
    if (!object)
        return Result::failure("Send a JSON object.");
    BatchOrder order;
    order.body = std::move(*object);
    const auto kind = readKind(order.body);
    if (!kind)
        return Result::failure("kind must be decision or generation.");
    order.kind = *kind;
    const Json::Value* items = itemsOf(order.body);
    if (!items || items->empty())
        return Result::failure("Add at least one item.");
    if (items->size() > maximumItems)
        return Result::failure("A batch can hold 200 items.");
    if (snapshots && snapshots->size() != items->size())
        return Result::failure("Question snapshots must match batch items.");
    order.category = trimmedText(order.body, "category");
    order.subcategory = trimmedText(order.body, "subcategory");
    if (order.category.empty() && !order.subcategory.empty())
        return Result::failure("Type a category before a subcategory.");
    const std::string_view name = trimmedText(order.body, "name");
    order.name = name.empty() ? "API batch" : name;
    if (textOr(order.body, "scoring", "") == rawString(ScoringMode::scale))
        order.scoring = ScoringMode::scale;
    return Result::success(std::move(order));
}

Attempt<std::vector<BatchItem>> readBatchItems(const BatchOrder& order,
                                               const std::optional<QuestionSnapshots>& snapshots) {
    using Result = Attempt<std::vector<BatchItem>>;
    const Json::Value& sent = *Json::find(order.body, "items");
    const std::string batchSystem = textOr(order.body, "system", "");
    std::vector<BatchItem> items;
    items.reserve(sent.size());
    for (std::size_t i = 0; i < sent.size(); ++i) {
        const std::string name = "Item " + std::to_string(i + 1);
        auto item = order.kind == QuorlKind::decision
                        ? readDecision(sent[i], name, snapshots ? &(*snapshots)[i] : nullptr)
                        : readGeneration(sent[i], name, batchSystem);
        if (!item)
            return Result::failure(item.message());
        items.push_back(std::move(item).value());
    }
    return Result::success(std::move(items));
}

} // namespace quorl
