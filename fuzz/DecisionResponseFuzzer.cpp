#include "Require.h"
#include "base/Json.h"
#include "decision/VeritorResults.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using quorl::fuzzing::require;
namespace Veritor = quorl::Veritor;

namespace {

// The seeds answer these, under the keys "route" and "is_it_safe".
std::vector<quorl::DecisionQuestion> makeQuestions() {
    auto choice = quorl::DecisionQuestion::starter();
    choice.name = "route";
    choice.options[0].label = "North";
    choice.options[1].label = "South";
    auto noul = quorl::DecisionQuestion::starter();
    noul.type = quorl::DecisionQuestionType::noul;
    noul.instructions = "Is it safe?";
    return {choice, noul};
}

// The card, the summary and a restart read the stored text; they have to say what the response said.
void checkStoredText(std::string_view body, const Veritor::Interpreted& response) {
    static const auto questions = makeQuestions();
    const auto results = Veritor::decisionResults(body, questions);
    require(Veritor::decisionResults(response.pretty, questions) == results, "results are as before");
    if (!response.summary.empty())
        require(Veritor::summary(response.pretty) == response.summary, "the summary is as before");
    for (const auto& result : results) {
        const auto corrected =
            Veritor::applyingChoiceCorrections(response.pretty, {{result.key, "corrected"}});
        if (!corrected)
            continue;
        require(Veritor::decisionResults(*corrected, questions).size() == results.size(),
                "a correction loses no answer");
        for (const auto& changed : Veritor::decisionResults(*corrected, questions))
            require(changed.key != result.key || changed.answer == "corrected", "a correction is shown");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view body(reinterpret_cast<const char*>(bytes), size);
    const auto response = Veritor::interpret(body);
    require(response.error || !response.pretty.empty(), "there is an answer or an error");
    if (quorl::Json::parseObject(body))
        checkStoredText(body, response);
    static_cast<void>(Veritor::summary(body));
    return 0;
}
