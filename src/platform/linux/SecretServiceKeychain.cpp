#include "platform/linux/SecretServiceKeychain.h"

#include "platform/linux/BoundedCall.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

#include <libsecret/secret.h>

namespace quorl {

namespace {

// Items count by their two attributes alone, whatever program wrote them under whatever schema.
const SecretSchema* schema() {
    static const SecretSchema ours = [] {
        SecretSchema named{};
        named.name = "com.quorltest.app";
        named.flags = SECRET_SCHEMA_DONT_MATCH_NAME;
        named.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
        named.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return named;
    }();
    return &ours;
}

struct Release {
    void operator()(SecretService* service) const { g_object_unref(service); }
    void operator()(SecretValue* value) const { secret_value_unref(value); }
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};

template <class Type>
using Owned = std::unique_ptr<Type, Release>;

// The way to the service, kept from call to call, since agreeing on the key of a session costs more than all
// else. Not libsecret's shared one, which sends its signals to whichever thread came first.
struct Connection {
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() {
        service.reset();
        hearSignals(); // the last of them frees what listened
    }

    void hearSignals() {
        while (g_main_context_iteration(context.get(), FALSE)) {
        }
    }

    Owned<GMainContext> context{g_main_context_new()}; // where its signals wait
    Owned<SecretService> service;                      // null until needed, and after a failure
    std::string owner;                                 // the process behind `service`, as the bus names it
};

std::string ownerOf(SecretService* service) {
    const std::unique_ptr<char, decltype(&g_free)> name(g_dbus_proxy_get_name_owner(G_DBUS_PROXY(service)),
                                                        g_free);
    return name ? name.get() : "";
}

// One call about one item, on the thread that makes it.
class Call {
public:
    Call(Connection& way, const std::string& service, const std::string& account, GCancellable* cancel)
        : connection(way), attributes(g_hash_table_new_full(g_str_hash, g_str_equal, nullptr, g_free)),
          cancellable(cancel) {
        g_main_context_push_thread_default(connection.context.get());
        g_hash_table_insert(attributes.get(), const_cast<char*>("service"), g_strdup(service.c_str()));
        g_hash_table_insert(attributes.get(), const_cast<char*>("account"), g_strdup(account.c_str()));
        connection.hearSignals();
        connect();
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call() {
        if (hasFailed)
            connection.service.reset();
        connection.hearSignals();
        g_main_context_pop_thread_default(connection.context.get());
    }

    explicit operator bool() const { return connection.service != nullptr; }

    /// Null where there is nothing or the search failed.
    Owned<GList> search(int flags) {
        GError* error = nullptr;
        Owned<GList> items(secret_service_search_sync(connection.service.get(), schema(), attributes.get(),
                                                      static_cast<SecretSearchFlags>(flags), cancellable,
                                                      &error));
        note(error);
        return items;
    }

    void store(const std::string& label, const std::string& bytes) {
        const Owned<SecretValue> value(
            secret_value_new(bytes.data(), static_cast<gssize>(bytes.size()), "text/plain"));
        GError* error = nullptr;
        secret_service_store_sync(connection.service.get(), schema(), attributes.get(),
                                  SECRET_COLLECTION_DEFAULT, label.c_str(), value.get(), cancellable, &error);
        note(error);
    }

    void clear() {
        GError* error = nullptr;
        secret_service_clear_sync(connection.service.get(), schema(), attributes.get(), cancellable, &error);
        note(error);
    }

    bool hasFailed = false;

private:
    // A service that has started again knows nothing of a session with the one before it, and would keep its
    // secrets without a word of error.
    void connect() {
        auto& service = connection.service;
        if (service && ownerOf(service.get()) == connection.owner)
            return;
        service.reset(secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_OPEN_SESSION,
                                               cancellable, nullptr));
        connection.owner = service ? ownerOf(service.get()) : "";
    }

    void note(GError* error) {
        const Owned<GError> owned(error);
        hasFailed |= error != nullptr;
    }

    Connection& connection;
    Owned<GHashTable> attributes;
    GCancellable* cancellable;
};

} // namespace

struct SecretServiceKeychain::State {
    explicit State(std::chrono::milliseconds perCall) : patience(perCall) {}

    const std::chrono::milliseconds patience;
    // One call at a time: of several at once each would ask its user to unlock the same collection.
    std::mutex lock;
    std::condition_variable ended;
    bool isBusy = false;      // guarded by `lock`
    bool isAbandoned = false; // guarded by `lock`; the call under way has outlasted its patience

    Connection connection; // the busy call's alone

    // Set by `copy` alone.
    std::atomic<bool> mayAsk = true;
    std::atomic<bool> hasGivenUp = false;

    // The result of `work`, or nothing where it took too long.
    template <class Result>
    static std::optional<Result> call(const std::shared_ptr<State>& state,
                                      std::function<Result(GCancellable*)> work);

    std::optional<std::string> copy(Call& call);
};

template <class Result>
std::optional<Result> SecretServiceKeychain::State::call(const std::shared_ptr<State>& state,
                                                         std::function<Result(GCancellable*)> work) {
    std::unique_lock guard(state->lock);
    state->ended.wait(guard, [&] { return !state->isBusy || state->isAbandoned; });
    if (state->isBusy)
        return std::nullopt;
    state->isBusy = true;
    guard.unlock();
    auto result =
        callWithin<Result>(state->patience, [state, work = std::move(work)](GCancellable* cancellable) {
            auto answer = work(cancellable);
            const std::lock_guard ending(state->lock);
            state->isBusy = state->isAbandoned = false;
            state->ended.notify_all();
            return answer;
        });
    guard.lock();
    if (!result)
        state->isAbandoned = state->isBusy;
    state->ended.notify_all();
    return result;
}

std::optional<std::string> SecretServiceKeychain::State::copy(Call& call) {
    if (!call) {
        hasGivenUp = true;
        return std::nullopt;
    }
    const auto items =
        call.search(SECRET_SEARCH_LOAD_SECRETS | (mayAsk ? SECRET_SEARCH_UNLOCK : SECRET_SEARCH_NONE));
    if (call.hasFailed)
        mayAsk = false;
    if (!items)
        return std::nullopt;
    const Owned<SecretValue> value(secret_item_get_secret(SECRET_ITEM(items->data)));
    if (!value) {
        mayAsk = false;
        return std::nullopt;
    }
    gsize length = 0;
    const char* bytes = secret_value_get(value.get(), &length);
    return std::string(bytes, length);
}

SecretServiceKeychain::SecretServiceKeychain(std::chrono::milliseconds patience)
    : state(std::make_shared<State>(patience)) {}

SecretServiceKeychain::~SecretServiceKeychain() = default;

std::optional<std::string> SecretServiceKeychain::copy(const std::string& service,
                                                       const std::string& account) {
    using Bytes = std::optional<std::string>;
    if (state->hasGivenUp)
        return std::nullopt;
    const auto result =
        State::call<Bytes>(state, [state = state, service, account](GCancellable* cancellable) -> Bytes {
            Call call(state->connection, service, account, cancellable);
            return state->copy(call);
        });
    if (!result)
        state->hasGivenUp = true;
    return result.value_or(std::nullopt);
}

void SecretServiceKeychain::add(const std::string& service, const std::string& account,
                                const std::string& bytes) {
    State::call<bool>(state, [state = state, service, account, bytes](GCancellable* cancellable) {
        Call call(state->connection, service, account, cancellable);
        if (call && !call.search(SECRET_SEARCH_NONE))
            call.store("Quorl: credentials of the model " + account, bytes);
        return true;
    });
}

void SecretServiceKeychain::remove(const std::string& service, const std::string& account) {
    State::call<bool>(state, [state = state, service, account](GCancellable* cancellable) {
        Call call(state->connection, service, account, cancellable);
        if (call) {
            // Clearing passes over what is locked.
            static_cast<void>(call.search(SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK));
            call.clear();
        }
        return true;
    });
}

} // namespace quorl
