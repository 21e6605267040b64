#include "app/Workers.h"

#include <system_error>
#include <thread>

namespace quorl {

Workers::~Workers() {
    std::unique_lock guard(lock);
    idle.wait(guard, [this] { return running == 0; });
}

void Workers::start(std::function<void()> work) {
    {
        const std::lock_guard guard(lock);
        ++running;
        waiting.push_back(std::move(work));
    }
    try {
        std::thread([this] { drain(); }).detach();
    } catch (const std::system_error&) {
        std::unique_lock guard(lock);
        if (running > 1) {
            --running; // a thread that is under way will find the work before it ends
            return;
        }
        guard.unlock();
        drain(); // nobody else is left to do it
    }
}

// Runs what waits. There is one thread for each piece of work, so each normally finds just its own.
void Workers::drain() {
    std::unique_lock guard(lock);
    while (!waiting.empty()) {
        auto work = std::move(waiting.front());
        waiting.pop_front();
        guard.unlock();
        work();
        work = nullptr; // what it captured goes before the next begins
        guard.lock();
    }
    --running;
    // Under the lock: the destructor may end this object as soon as it can take it.
    idle.notify_all();
}

} // namespace quorl
