#pragma once

#include "base/ThreadSafety.h"
#include "transports/URLOpener.h"

#include <string>
#include <string_view>
#include <utility>

namespace quorl {

// What a login has printed so far. Hands the first "https://" URL in it to `opener`, once, and never gives a
// URL to anyone else. Thread: any number at once; `opener` is called without the lock, on the thread that
// appends.
class LoginBuffer {
public:
    enum class Links { open, leave };

    explicit LoginBuffer(URLOpener opener) : open(std::move(opener)) {}

    /// A chunk that is empty or not UTF-8 is ignored. A URL that the end of the text so far cuts short is
    /// opened as it stands.
    void append(std::string_view data, Links links) EXCLUDES(lock);

    /// The output without its "https://" URLs, trimmed, at most 300 characters.
    [[nodiscard]] std::string redacted() const EXCLUDES(lock);

private:
    [[nodiscard]] bool isFirstToOpen() EXCLUDES(lock);

    const URLOpener open;
    mutable Mutex lock;
    std::string text GUARDED_BY(lock);
    bool opened GUARDED_BY(lock) = false;
};

} // namespace quorl
