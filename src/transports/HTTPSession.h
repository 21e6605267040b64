#pragma once

#include "base/Attempt.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace quorl {

struct HTTPReply {
    std::string body;
    int status = 0;
};

// The process's one way to send HTTP requests: any number at once, to one host or many, over connections that
// are kept and reused, driven by one network thread of its own. Redirects are not followed; they come back as
// the status they are. Thread: any; a caller blocks until its own request has ended and never waits for
// another's. Failures: a transport error is one line of text that holds no header and no body. Any HTTP
// status is a success.
class HTTPSession {
public:
    struct Limits {
        std::chrono::milliseconds timeout{180'000}; // per request, from start to the body's last byte
        std::size_t maximumReplyBytes = std::size_t{64} * 1024 * 1024; // a longer body ends as a failure
    };

    HTTPSession();
    explicit HTTPSession(Limits limits);
    ~HTTPSession(); // closes, then waits until no caller is left inside `post`

    HTTPSession(const HTTPSession&) = delete;
    HTTPSession& operator=(const HTTPSession&) = delete;

    /// Whether a text is a whole URL that can be asked: "http" or "https", "://", a host, no blanks or
    /// control characters.
    [[nodiscard]] static bool isURL(const std::string& text);

    /// Sends `body` with each of `headers` to `url` and returns when the reply is whole or can no longer
    /// become so.
    [[nodiscard]] Attempt<HTTPReply>
    post(const std::string& url, const std::map<std::string, std::string>& headers, std::string body);

    /// Ends every request under way, and every later one at once, as a failure. For a program or test that is
    /// ending.
    void close();

private:
    class Loop;
    std::unique_ptr<Loop> loop;
};

} // namespace quorl
