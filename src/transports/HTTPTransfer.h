#pragma once

#include "base/Attempt.h"
#include "transports/HTTPSession.h"

#include <array>
#include <curl/curl.h>
#include <map>
#include <memory>
#include <optional>
#include <semaphore.h>
#include <string>

namespace quorl {

// One request at a time on one easy handle of libcurl, which is set up once and used again and again.
// Thread: the caller prepares it, waits and reads the outcome; between `prepare` and `end` it is the network
// thread's alone.
class HTTPTransfer {
public:
    /// `noProxy` lists the hosts that are always reached directly, as CURLOPT_NOPROXY takes them.
    HTTPTransfer(const HTTPSession::Limits& limits, const std::string& noProxy);
    ~HTTPTransfer();

    HTTPTransfer(const HTTPTransfer&) = delete;
    HTTPTransfer& operator=(const HTTPTransfer&) = delete;

    /// The caller's side.
    void prepare(const std::string& url, const std::map<std::string, std::string>& headers, std::string body);
    void wait();

    /// The outcome; leaves nothing of the request behind.
    [[nodiscard]] Attempt<HTTPReply> finish();

    /// The network thread's side.
    [[nodiscard]] CURL* easy() const { return handle.get(); }
    [[nodiscard]] static HTTPTransfer& of(CURL* easy);

    /// Wakes the caller; without a result the session was closed.
    void end(std::optional<CURLcode> code);

private:
    static std::size_t receive(char* bytes, std::size_t, std::size_t count, void* self) noexcept;
    [[nodiscard]] std::string problem() const;

    template <class Value>
    void set(CURLoption option, Value value);

    struct Free {
        void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    const std::size_t maximumReplyBytes;
    std::array<char, CURL_ERROR_SIZE> errorText{};
    std::unique_ptr<CURL, Free> handle;
    std::unique_ptr<curl_slist, Free> headerLines;
    std::string requestBody; // curl reads it in place
    std::string replyBody;
    bool isTooLong = false;
    std::optional<CURLcode> result;
    // Not std::binary_semaphore, which spins and yields before it sleeps: hundreds of callers wait at a time,
    // for seconds.
    sem_t ended;
};

} // namespace quorl
