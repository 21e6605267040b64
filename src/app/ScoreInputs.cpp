#include "app/AppModel.h"

#include "app/ScoreMath.h"

namespace quorl {

// Every answer takes part, those of deleted models too.
std::vector<ScoreInput> AppModel::scoreInputs() const {
    std::size_t count = 0;
    for (std::size_t place = 0; place < library.runCount(); ++place)
        count += library.answersOfRun(library.runAt(place).id).size();
    std::vector<ScoreInput> inputs;
    inputs.reserve(count); // a large library's would be moved twenty times otherwise
    for (std::size_t place = 0; place < library.runCount(); ++place) {
        const QuorlRun& run = library.runAt(place);
        for (const ModelAnswer& answer : library.answersOfRun(run.id)) {
            inputs.push_back({answer.modelID, answer.modelName, run.categoryID, answer.state, answer.accepted,
                              answer.rating, answer.latencyMS, answer.costUSD, answer.inputTokens,
                              answer.outputTokens});
        }
    }
    return inputs;
}

} // namespace quorl
