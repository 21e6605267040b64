#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace quorl {

// The threads that ask models: each piece of work gets a thread of its own at once, without limit, and ends
// by itself. Thread: any.
class Workers {
public:
    Workers() = default;
    ~Workers(); // waits for all work; close what it waits on first

    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Where the system refuses another thread, the work waits for the end of one and runs after it.
    void start(std::function<void()> work);

private:
    void drain();

    std::mutex lock;
    std::condition_variable idle;
    std::deque<std::function<void()>> waiting; // guarded by `lock`
    std::size_t running = 0;                   // threads; guarded by `lock`
};

} // namespace quorl
