#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

namespace quorl::test {

// The statements that the program's connection runs, as SQLite sees them. It listens to connections opened
// while it lives.
class StatementLog {
public:
    StatementLog() {
        lines().clear();
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(&listen)); // the signature SQLite asks for
    }
    ~StatementLog() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&listen)); }

    /// The first word or two of each statement, a trigger's own left out.
    static std::vector<std::string>& lines() {
        static std::vector<std::string> all;
        return all;
    }

private:
    static int listen(sqlite3* db, char**, const void*) {
        return sqlite3_trace_v2(db, SQLITE_TRACE_STMT, &note, nullptr);
    }

    static int note(unsigned, void*, void*, void* sql) {
        const std::string text(static_cast<const char*>(sql));
        if (text.starts_with("--"))
            return 0;
        const auto end = text.find(' ', text.find(' ') + 1);
        lines().push_back(text.substr(0, text.starts_with("UPDATE") ? text.find(" SET") : end));
        return 0;
    }
};

} // namespace quorl::test
