#pragma once

#include "base/Date.h"
#include "base/UUID.h"
#include "store/StoreError.h"

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quorl {

// One prepared statement, finalized when it goes. For use within one call of the store; none is kept for the
// next. Thread: main. Failures: throws `StoreError` with SQLite's text.
class Statement {
public:
    Statement(sqlite3* connection, const char* sql) : db(connection) {
        sqlite3_stmt* prepared = nullptr;
        const int result = sqlite3_prepare_v2(db, sql, -1, &prepared, nullptr);
        handle.reset(prepared);
        if (result != SQLITE_OK)
            throw StoreError(sqlite3_errmsg(db));
    }

    /// Binds the values to the parameters in their order.
    template <class... Values>
    Statement& bind(const Values&... values) {
        int parameter = 0;
        (bindOne(++parameter, values), ...);
        return *this;
    }

    /// SQLite's result code.
    [[nodiscard]] int step() { return sqlite3_step(handle.get()); }

    /// Runs a write to its end.
    void run() {
        if (step() != SQLITE_DONE)
            throw StoreError(sqlite3_errmsg(db));
    }

    /// Makes the statement ready to be bound and run again.
    void reset() { sqlite3_reset(handle.get()); }

    [[nodiscard]] sqlite3_stmt* get() const { return handle.get(); }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    // The results of binding are not looked at: a parameter that is out of memory or too long is NULL to the
    // step that follows, which then names the column that may not be NULL.
    void bindOne(int parameter, const std::string& text) {
        sqlite3_bind_text(handle.get(), parameter, text.c_str(), -1, SQLITE_TRANSIENT);
    }
    void bindOne(int parameter, std::string_view text) { bindOne(parameter, std::string(text)); }
    void bindOne(int parameter, const UUID& id) { bindOne(parameter, id.text()); }
    void bindOne(int parameter, std::int64_t number) { sqlite3_bind_int64(handle.get(), parameter, number); }
    void bindOne(int parameter, bool flag) { sqlite3_bind_int64(handle.get(), parameter, flag ? 1 : 0); }
    void bindOne(int parameter, double number) { sqlite3_bind_double(handle.get(), parameter, number); }
    void bindOne(int parameter, Date date) { bindOne(parameter, secondsSince1970(date)); }

    template <class Value>
    void bindOne(int parameter, const std::optional<Value>& value) {
        if (value)
            bindOne(parameter, *value);
        else
            sqlite3_bind_null(handle.get(), parameter);
    }

    sqlite3* db;
    std::unique_ptr<sqlite3_stmt, Finalize> handle;
};

} // namespace quorl
