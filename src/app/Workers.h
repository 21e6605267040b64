#pragma once

#include "base/ThreadSafety.h"

#include <cstddef>
#include <deque>
#include <functional>

namespace quorl {

// The threads that ask models: each piece of work has a thread of its own at once, without limit, and ends by
// itself. A thread that has nothing left to do is kept a while, since the next comparison will want as many
// again. Thread: any.
class Workers {
public:
    Workers() = default;
    ~Workers(); // waits for all work; close what it waits on first

    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Where the system refuses another thread, the work waits for the end of some other.
    void start(std::function<void()> work);

private:
    void serve();
    void doWaiting() REQUIRES(lock); // works without the lock, which is held again at the end

    Mutex lock;
    Condition arrived;
    Condition ended;
    std::deque<std::function<void()>> waiting GUARDED_BY(lock);
    std::size_t threads GUARDED_BY(lock) = 0;  // alive, those that are only being started included
    std::size_t starting GUARDED_BY(lock) = 0; // those that have not looked for work yet
    std::size_t idle GUARDED_BY(lock) = 0;     // those that wait for work
    bool isEnding GUARDED_BY(lock) = false;
};

} // namespace quorl
