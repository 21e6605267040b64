#pragma once

#include <sqlite3.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorl::test {

// A library file as any other program sees it: a connection of its own, and SQL.
class RawLibrary {
public:
    using Row = std::vector<std::string>; // NULL stands as "NULL"

    explicit RawLibrary(const std::string& path) {
        EXPECT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK) << path;
        attempt("PRAGMA synchronous = OFF"); // no test pulls the plug
    }
    ~RawLibrary() { sqlite3_close(db); }

    RawLibrary(const RawLibrary&) = delete;
    RawLibrary& operator=(const RawLibrary&) = delete;

    /// SQLite's result code.
    int attempt(const std::string& script) {
        return sqlite3_exec(db, script.c_str(), nullptr, nullptr, nullptr);
    }

    void exec(const std::string& script) {
        EXPECT_EQ(attempt(script), SQLITE_OK) << script << ": " << sqlite3_errmsg(db);
    }

    [[nodiscard]] std::vector<Row> rows(const std::string& query) {
        std::vector<Row> rows;
        const auto collect = [](void* result, int count, char** values, char**) {
            Row row;
            for (int column = 0; column < count; ++column)
                row.emplace_back(values[column] ? values[column] : "NULL");
            static_cast<std::vector<Row>*>(result)->push_back(std::move(row));
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(db, query.c_str(), collect, &rows, nullptr), SQLITE_OK)
            << query << ": " << sqlite3_errmsg(db);
        return rows;
    }

    /// The only value of the only row.
    [[nodiscard]] std::string value(const std::string& query) {
        const auto all = rows(query);
        if (all.size() != 1 || all[0].size() != 1) {
            ADD_FAILURE() << query << " gave " << all.size() << " rows";
            return {};
        }
        return all[0][0];
    }

private:
    sqlite3* db = nullptr;
};

} // namespace quorl::test
