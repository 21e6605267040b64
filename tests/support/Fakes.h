#pragma once

#include "base/Date.h"
#include "platform/Platform.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <set>
#include <utility>
#include <variant>

// Stand-ins for the desktop's services. Each keeps what it was told where a test can see it.
namespace quorl::test {

// A clock that stands still until it is moved.
class FakeClock : public Clock {
public:
    [[nodiscard]] Date now() const override { return time; }
    void advance(std::chrono::duration<double> by) { time += by; }
    void set(Date to) { time = to; }

private:
    Date time = dateFromSeconds(1'800'000'000.25);
};

// A main thread that is pumped by hand. Delayed work waits for `advance`.
class TestLoop : public MainThread {
public:
    void post(std::function<void()> work) override {
        {
            const std::lock_guard guard(lock);
            posted.push_back(std::move(work));
        }
        arrived.notify_one();
    }

    void postAfter(std::chrono::milliseconds delay, std::function<void()> work) override {
        delayed.emplace(now + delay, std::move(work));
    }

    /// Runs what has been posted until `isDone`, waiting for more at most until the deadline. Answers
    /// `isDone`.
    template <class Condition>
    bool runUntil(Condition isDone, std::chrono::seconds deadline = std::chrono::seconds(60)) {
        const auto end = std::chrono::steady_clock::now() + deadline;
        while (!isDone()) {
            std::function<void()> work;
            {
                std::unique_lock guard(lock);
                if (!arrived.wait_until(guard, end, [&] { return !posted.empty(); }))
                    return isDone();
                work = std::move(posted.front());
                posted.pop_front();
            }
            work();
        }
        return true;
    }

    /// Runs what has been posted by now and by that work itself, without waiting.
    void runPosted() {
        runUntil([&] {
            const std::lock_guard guard(lock);
            return posted.empty();
        });
    }

    /// Waits until at least `count` pieces of work stand in line.
    void waitForPosted(std::size_t count) {
        std::unique_lock guard(lock);
        arrived.wait(guard, [&] { return posted.size() >= count; });
    }

    /// Moves the loop's own time and runs the delayed work that has come due, in order of time.
    void advance(std::chrono::milliseconds by) {
        now += by;
        while (!delayed.empty() && delayed.begin()->first <= now) {
            auto work = std::move(delayed.begin()->second);
            delayed.erase(delayed.begin());
            work();
        }
    }

private:
    std::mutex lock;
    std::condition_variable arrived;
    std::deque<std::function<void()>> posted; // guarded by `lock`
    std::chrono::milliseconds now{0};
    std::multimap<std::chrono::milliseconds, std::function<void()>> delayed;
};

class FakeDefaults : public UserDefaults {
public:
    using Value = std::variant<std::string, bool, std::vector<std::string>, std::pair<std::string, char>>;

    [[nodiscard]] bool contains(std::string_view key) const override {
        return values.contains(std::string(key));
    }
    [[nodiscard]] std::optional<std::string> string(std::string_view key) const override {
        return get<std::string>(key);
    }
    [[nodiscard]] bool boolean(std::string_view key) const override { return get<bool>(key).value_or(false); }
    [[nodiscard]] std::optional<std::string> bytes(std::string_view key) const override {
        const auto value = get<std::pair<std::string, char>>(key);
        return value ? std::optional(value->first) : std::nullopt;
    }
    [[nodiscard]] std::optional<std::vector<std::string>> strings(std::string_view key) const override {
        return get<std::vector<std::string>>(key);
    }

    void setString(std::string_view key, const std::string& value) override { set(key, value); }
    void setBoolean(std::string_view key, bool value) override { set(key, value); }
    void setBytes(std::string_view key, const std::string& value) override {
        set(key, std::pair<std::string, char>(value, 'b'));
    }
    void setStrings(std::string_view key, const std::vector<std::string>& value) override { set(key, value); }

    std::map<std::string, Value> values;
    std::vector<std::string> writes; // the keys, in the order in which they were written

private:
    template <class Kind>
    std::optional<Kind> get(std::string_view key) const {
        const auto entry = values.find(std::string(key));
        if (entry == values.end() || !std::holds_alternative<Kind>(entry->second))
            return std::nullopt;
        return std::get<Kind>(entry->second);
    }
    void set(std::string_view key, Value value) {
        writes.emplace_back(key);
        values.insert_or_assign(std::string(key), std::move(value));
    }
};

class FakeKeychain : public Keychain {
public:
    using Item = std::pair<std::string, std::string>; // service, account

    [[nodiscard]] std::optional<std::string> copy(const std::string& service,
                                                  const std::string& account) override {
        const std::lock_guard guard(lock);
        ++copies;
        const auto item = items.find({service, account});
        return isLocked || item == items.end() ? std::nullopt : std::optional(item->second);
    }
    void add(const std::string& service, const std::string& account, const std::string& bytes) override {
        const std::lock_guard guard(lock);
        if (!isLocked)
            items.emplace(Item{service, account}, bytes); // adding does not replace
    }
    void remove(const std::string& service, const std::string& account) override {
        const std::lock_guard guard(lock);
        if (!isLocked)
            items.erase({service, account});
    }

    std::map<Item, std::string> items;
    int copies = 0;        // calls of `copy`
    bool isLocked = false; // every operation fails

private:
    std::mutex lock;
};

class FakeClipboard : public Clipboard {
public:
    void replace(const std::string& text) override { contents = text; }

    std::optional<std::string> contents;
};

// A desktop whose user can be made to change their mind.
class FakeMotionSetting : public MotionSetting {
public:
    [[nodiscard]] bool isReduced() const override { return reduced; }
    void onChange(Changed listener) override { changed = std::move(listener); }

    void set(bool isReducedNow) {
        reduced = isReducedNow;
        if (changed)
            changed(reduced);
    }

private:
    bool reduced = false;
    Changed changed;
};

class FakeWindowState : public WindowState {
public:
    [[nodiscard]] std::optional<WindowFrame> frame() const override { return keptFrame; }
    [[nodiscard]] std::optional<int> divider() const override { return keptDivider; }
    void setFrame(const WindowFrame& frame) override { keptFrame = frame; }
    void setDivider(int width) override { keptDivider = width; }

    std::optional<WindowFrame> keptFrame;
    std::optional<int> keptDivider;
};

} // namespace quorl::test
