#include "app/AppModel.h"

#include <utility>

namespace quorl {

// A loop, since an item without models would be over at once.
void AppModel::pumpAPI() {
    while (!apiBusy() && !apiQueue.empty()) {
        APIWork work = std::move(apiQueue.front());
        apiQueue.pop_front();
        apiAwaited = work.jobs.size();
        for (Job& job : work.jobs) {
            const auto secret = work.secretsByModel.find(job.model.id);
            start({work.prompt, work.system, work.kind, std::move(job.model), work.questions},
                  secret == work.secretsByModel.end() ? ModelSecret{} : secret->second,
                  [answerID = job.answerID](AppModel& model, const auto& outcome) {
                      model.finish(answerID, outcome);
                      --model.apiAwaited;
                      model.pumpAPI();
                  });
        }
    }
}

} // namespace quorl
