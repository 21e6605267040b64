#include "Require.h"
#include "app/BatchOrder.h"
#include "base/Text.h"
#include "decision/Veritor.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace quorl;
using quorl::fuzzing::require;

// The bytes as the body of a request for a batch.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto order =
        readBatchOrder(std::string_view(reinterpret_cast<const char*>(bytes), size), std::nullopt);
    if (!order)
        return 0;
    require(!order.value().name.empty(), "every batch has a name");
    require(!order.value().category.empty() || order.value().subcategory.empty(),
            "a subcategory has a category");
    const auto items = readBatchItems(order.value(), std::nullopt);
    if (!items)
        return 0;
    require(!items.value().empty() && items.value().size() <= 200, "a batch has 1 to 200 items");
    for (const BatchItem& item : items.value()) {
        require(!Text::isBlank(item.prompt), "every item asks something");
        const bool isDecision = order.value().kind == QuorlKind::decision;
        require(item.questions.empty() != isDecision, "typed questions are what makes a decision");
        require(!isDecision || !Veritor::validate(item.prompt, item.questions), "questions are valid");
    }
    return 0;
}
