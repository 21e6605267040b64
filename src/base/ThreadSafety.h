#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// A mutex whose use clang checks as it compiles (-Wthread-safety): data marked GUARDED_BY(lock) can be
// touched only where the lock is held. The standard library's own mutex carries no such marks, hence the
// wrappers. For other compilers the marks are empty. A predicate of a wait is written as a loop around
// `wait`, since the analysis does not look through a lambda. Thread: any.

#if defined(__clang__)
#define QUORL_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define QUORL_THREAD_SAFETY(attribute)
#endif

#define CAPABILITY(name) QUORL_THREAD_SAFETY(capability(name))
#define SCOPED_CAPABILITY QUORL_THREAD_SAFETY(scoped_lockable)
#define GUARDED_BY(mutex) QUORL_THREAD_SAFETY(guarded_by(mutex))
#define REQUIRES(...) QUORL_THREAD_SAFETY(requires_capability(__VA_ARGS__))
#define EXCLUDES(...) QUORL_THREAD_SAFETY(locks_excluded(__VA_ARGS__))
#define ACQUIRE(...) QUORL_THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define RELEASE(...) QUORL_THREAD_SAFETY(release_capability(__VA_ARGS__))

namespace quorl {

class CAPABILITY("mutex") Mutex {
public:
    void lock() ACQUIRE() { mutex.lock(); }
    void unlock() RELEASE() { mutex.unlock(); }

private:
    friend class MutexLock;
    std::mutex mutex;
};

// Holds a mutex to the end of its scope, but for the time between `unlock` and `lock`.
class SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : held(mutex.mutex) {}
    ~MutexLock() RELEASE() = default;

    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    void lock() ACQUIRE() { held.lock(); }
    void unlock() RELEASE() { held.unlock(); }

private:
    friend class Condition;
    std::unique_lock<std::mutex> held;
};

class Condition {
public:
    /// Gives the lock up while it sleeps. May wake without a notification.
    void wait(MutexLock& lock) { condition.wait(lock.held); }

    /// The same, at most for so long; false if the time ran out.
    bool waitFor(MutexLock& lock, std::chrono::milliseconds time) {
        return condition.wait_for(lock.held, time) == std::cv_status::no_timeout;
    }

    void notifyOne() { condition.notify_one(); }
    void notifyAll() { condition.notify_all(); }

private:
    std::condition_variable condition;
};

} // namespace quorl
