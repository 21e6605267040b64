#pragma once

#include "base/UUID.h"

#include <cassert>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quorl {

// The observable fields of the model, by their names there.
enum class AppField {
    models,
    categories,
    runs,
    batches,
    answersByRun,
    dataset,
    destination,
    activeRunID,
    activeBatchID,
    draftIsBulk,
    draftBulkQuestions,
    draftBulkTemplate,
    bulkTemplateInitialized,
    draftKind,
    draftPrompt,
    draftSystem,
    draftCategoryText,
    draftSubcategoryText,
    draftQuestions,
    draftCategoryID,
    draftScoring,
    draftModelIDs,
    claudeLoggedIn,
    claudeLoginStatus,
    focusToken,
    selectedModelID,
    selectedCategoryID,
    alertMessage,
    feedback,
    pendingDelete,
    selectedBatchID,
    apiBase,
    apiToken,
    apiMessage,
    launchWarning,
    testStatus,
    secretFlags,
    lastAsk,
};

struct AppChange {
    AppField field;
    // Of runs and answers the run that changed, of the maps by model the model; absent where the whole field
    // may have.
    std::optional<UUID> id;
};

// Whom to tell of a change. Thread: main; observers run inside the write and must not subscribe or write
// there.
class Observers {
public:
    using Observer = std::function<void(const AppChange&)>;

    // Ends the subscription when it goes. It may outlive the `Observers`.
    class Subscription {
    public:
        Subscription() = default;

    private:
        friend class Observers;
        explicit Subscription(std::shared_ptr<Observer> kept) : observer(std::move(kept)) {}
        std::shared_ptr<Observer> observer;
    };

    [[nodiscard]] Subscription subscribe(Observer observer) {
        assert(isMainThread());
        auto shared = std::make_shared<Observer>(std::move(observer));
        observers.push_back(shared);
        return Subscription(std::move(shared));
    }

    void notify(const AppChange& change) {
        assert(isMainThread()); // of every change to the model's state
        for (const auto& observer : observers) {
            // Held for the call: the subscriber may go away in it.
            if (const auto alive = observer.lock())
                (*alive)(change);
        }
        std::erase_if(observers, [](const auto& observer) { return observer.expired(); });
    }

private:
    [[nodiscard]] bool isMainThread() const { return std::this_thread::get_id() == mainThread; }

    std::vector<std::weak_ptr<Observer>> observers;
    const std::thread::id mainThread = std::this_thread::get_id();
};

// A field that tells when it is changed. Writing an equal value tells nobody. Thread: main.
template <class Value>
class Observed {
public:
    Observed(Observers& toTell, AppField name, Value initial = {})
        : observers(toTell), field(name), value(std::move(initial)) {}

    Observed(const Observed&) = delete;
    Observed& operator=(const Observed&) = delete;

    const Value& operator*() const { return value; }
    const Value* operator->() const { return &value; }

    Observed& operator=(Value next) {
        if (next == value)
            return *this;
        value = std::move(next);
        observers.notify({field, std::nullopt});
        return *this;
    }

private:
    Observers& observers;
    const AppField field;
    Value value;
};

// A map of which one entry is changed at a time. Thread: main.
template <class Value>
class ObservedMap {
public:
    ObservedMap(Observers& toTell, AppField name) : observers(toTell), field(name) {}

    ObservedMap(const ObservedMap&) = delete;
    ObservedMap& operator=(const ObservedMap&) = delete;

    /// Null where there is no entry.
    [[nodiscard]] const Value* find(const UUID& key) const {
        const auto entry = entries.find(key);
        return entry == entries.end() ? nullptr : &entry->second;
    }

    void set(const UUID& key, Value next) {
        const auto entry = entries.find(key);
        if (entry != entries.end() && entry->second == next)
            return;
        entries.insert_or_assign(key, std::move(next));
        observers.notify({field, key});
    }

private:
    Observers& observers;
    const AppField field;
    std::unordered_map<UUID, Value> entries;
};

} // namespace quorl
