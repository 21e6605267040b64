#include "app/Workers.h"

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

namespace quorl {

namespace {

constexpr std::chrono::seconds keptFor{10};

} // namespace

Workers::~Workers() {
    MutexLock guard(lock);
    isEnding = true;
    arrived.notifyAll();
    while (threads > 0)
        ended.wait(guard);
}

void Workers::start(std::function<void()> work) {
    MutexLock guard(lock);
    waiting.push_back(std::move(work));
    if (waiting.size() <= idle + starting) {
        guard.unlock(); // which the woken thread would have to wait for
        arrived.notifyOne();
        return;
    }
    ++threads;
    ++starting;
    guard.unlock();
    try {
        std::thread([this] { serve(); }).detach();
    } catch (const std::system_error&) {
        guard.lock();
        --starting;
        // The others take the work when they come to it; without any it is done here.
        if (threads == 1)
            doWaiting();
        --threads;
        ended.notifyAll();
    }
}

void Workers::serve() {
    MutexLock guard(lock);
    --starting;
    bool isWanted = true;
    while (isWanted) {
        doWaiting();
        if (isEnding)
            break;
        ++idle;
        const bool wasWoken = arrived.waitFor(guard, keptFor);
        --idle;
        isWanted = wasWoken || !waiting.empty();
    }
    --threads;
    // Under the lock: the destructor may end this object as soon as it can take it.
    ended.notifyAll();
}

void Workers::doWaiting() {
    while (!waiting.empty()) {
        auto work = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        work();
        work = nullptr; // what it captured goes before the next begins
        lock.lock();
    }
}

} // namespace quorl
