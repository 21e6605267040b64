#include "app/AppModel.h"

namespace quorl {

namespace {

constexpr std::chrono::milliseconds shownFor{2800};

} // namespace

void AppModel::announce(std::string title, std::string detail, std::string symbol, bool isMilestone) {
    const UUID id = UUID::random();
    feedback = QuorlFeedback{id, std::move(title), std::move(detail), std::move(symbol), isMilestone};
    platform.mainThread.postAfter(shownFor, [id, model = std::weak_ptr(alive)] {
        const auto present = model.lock();
        // A newer toast has a timer of its own.
        if (!present || !*(*present)->feedback || (**(*present)->feedback).id != id)
            return;
        (*present)->feedback = std::nullopt;
    });
}

} // namespace quorl
