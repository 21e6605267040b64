#pragma once

#include "sample-endpoint/Request.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

namespace quorl::sample {

// Whether requests are kept in memory. If not, an endpoint may run for days.
enum class Record { keep, drop };

// What came in, in the order of arrival. Thread: any. Failures: none.
class Journal {
public:
    explicit Journal(Record choice) : record(choice) {}

    void add(const Request& request);

    /// Empty where they are dropped.
    [[nodiscard]] std::vector<Request> requests() const;

    /// Whether at least `wanted` have been added, kept or not, by then.
    [[nodiscard]] bool waitFor(std::size_t wanted, std::chrono::milliseconds deadline) const;

private:
    const Record record;
    mutable std::mutex lock; // the standard one, for its condition knows deadlines
    mutable std::condition_variable added;
    std::vector<Request> kept; // guarded by `lock`
    std::size_t count = 0;     // guarded by `lock`
};

/// A request as one line of JSON, without the line's end. Of a header that carries a key only the length is
/// told.
[[nodiscard]] std::string journalLine(const Request& request);

} // namespace quorl::sample
