#pragma once

#include "domain/Records.h"

struct sqlite3_stmt;

namespace quorl {

// What a load learned about the rows it read, for mirrors that would rather not read them again.
struct Reading {
    // Reading the same rows again gives the same records, and each is found by its `id`. It is false where an
    // identifier does not stand as we write it (an unparsable one is read as a fresh one each time), where a
    // list's order rests on a value that is no number, and where the load broke off.
    bool isRepeatable = true;
};

// The columns of each record's table, in the order in which `readRow` takes them, beginning with the
// statement's first. Reading a row never fails: what does not decode becomes a fixed value, told at each
// column. Thread: main.
template <class Record>
[[nodiscard]] Record readRow(sqlite3_stmt* statement, Reading& reading);

template <>
ModelProfile readRow<ModelProfile>(sqlite3_stmt* statement, Reading& reading);
template <>
Category readRow<Category>(sqlite3_stmt* statement, Reading& reading);
template <>
QuorlRun readRow<QuorlRun>(sqlite3_stmt* statement, Reading& reading);
template <>
QuorlBatch readRow<QuorlBatch>(sqlite3_stmt* statement, Reading& reading);
template <>
ModelAnswer readRow<ModelAnswer>(sqlite3_stmt* statement, Reading& reading);
template <>
DatasetExample readRow<DatasetExample>(sqlite3_stmt* statement, Reading& reading);

/// Reads one column as the `id` or `run_id` of a row.
[[nodiscard]] UUID readKey(sqlite3_stmt* statement, int column, Reading& reading);

} // namespace quorl
