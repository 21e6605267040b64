#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <thread>

#include <gio/gio.h>

namespace quorl {

// Runs `work`, which talks to another process, on a thread of its own and waits for it at most `patience`.
// Then nothing is answered and the work is cancelled; if it does not end even so it is left alone, and what
// it holds is freed when it returns. GLib's cancelling is not relied upon, since a prompt that never closes
// does not hear it.
template <class Result>
std::optional<Result> callWithin(std::chrono::milliseconds patience,
                                 std::function<Result(GCancellable*)> work) {
    constexpr std::chrono::milliseconds grace(200);
    const std::shared_ptr<GCancellable> cancellable(g_cancellable_new(), g_object_unref);
    std::packaged_task<Result()> task(
        [work = std::move(work), cancellable] { return work(cancellable.get()); });
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    if (result.wait_for(patience) == std::future_status::ready)
        return result.get();
    g_cancellable_cancel(cancellable.get());
    static_cast<void>(result.wait_for(grace));
    return std::nullopt;
}

} // namespace quorl
