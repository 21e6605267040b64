#include "transports/HTTPTransfer.h"

#include "base/Text.h"

#include <cassert>
#include <cerrno>
#include <new>
#include <string_view>
#include <utility>

namespace quorl {

namespace {

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7f;
}

// Runs of blanks and line ends become one blank.
std::string oneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        if (!isControl(character) && character != ' ')
            line += character;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    return std::string(Text::trimmed(line));
}

} // namespace

template <class Value>
void HTTPTransfer::set(CURLoption option, Value value) {
    [[maybe_unused]] const CURLcode code = curl_easy_setopt(handle.get(), option, value);
    assert(code == CURLE_OK);
}

HTTPTransfer::HTTPTransfer(const HTTPSession::Limits& limits, const std::string& noProxy)
    : maximumReplyBytes(limits.maximumReplyBytes), handle(curl_easy_init()) {
    if (!handle)
        throw std::bad_alloc();
    sem_init(&ended, 0, 0);
    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_ERRORBUFFER, errorText.data());
    set(CURLOPT_WRITEFUNCTION, &HTTPTransfer::receive);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(limits.timeout.count()));
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_TCP_NODELAY, 1L);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_HTTP09_ALLOWED, 0L);
    set(CURLOPT_NOPROXY, noProxy.c_str());
    // Unpacked bytes are what `receive` counts, so a small reply that unpacks to a huge one is stopped as
    // well.
    set(CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    // Dots in a path are part of what was asked and, where requests are signed, of what was signed.
    set(CURLOPT_PATH_AS_IS, 1L);
    // Without this, giving up on a name look-up waits for the resolver, and with it the network thread and
    // every request.
    set(CURLOPT_QUICK_EXIT, 1L);
}

HTTPTransfer::~HTTPTransfer() {
    sem_destroy(&ended);
}

void HTTPTransfer::prepare(const std::string& url, const std::map<std::string, std::string>& headers,
                           std::string body) {
    // A wait for "100 Continue" would add a round trip to every long question.
    headerLines.reset(curl_slist_append(nullptr, "Expect:"));
    for (const auto& [name, value] : headers) {
        // curl takes "Name:" as the wish to leave a header out; "Name;" sends it empty.
        std::string line = name;
        if (Text::isBlank(value))
            line += ';';
        else
            line.append(": ").append(value);
        curl_slist_append(headerLines.get(), line.c_str());
    }
    requestBody = std::move(body);
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_HTTPHEADER, headerLines.get());
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(requestBody.size()));
    set(CURLOPT_POSTFIELDS, requestBody.data());
    isTooLong = false;
    result.reset();
}

void HTTPTransfer::wait() {
    // A signal's handler may end the sleep early.
    while (sem_wait(&ended) != 0 && errno == EINTR) {
    }
}

Attempt<HTTPReply> HTTPTransfer::finish() {
    long status = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
    auto outcome = result == CURLE_OK
                       ? Attempt<HTTPReply>::success({std::move(replyBody), static_cast<int>(status)})
                       : Attempt<HTTPReply>::failure(problem());
    // The handle waits for its next use without a key, a question or an answer in it.
    set(CURLOPT_URL, nullptr);
    set(CURLOPT_HTTPHEADER, nullptr);
    set(CURLOPT_POSTFIELDS, nullptr);
    headerLines.reset();
    requestBody = {};
    replyBody = {};
    return outcome;
}

std::string HTTPTransfer::problem() const {
    if (!result)
        return "The request ended because Quorl is closing.";
    if (isTooLong)
        return "The response is too long to be read.";
    const std::string detail = oneLine(errorText.data());
    // Parts of the text come from the other side, a certificate's name for one.
    return detail.empty() || !Text::isUTF8(detail) ? curl_easy_strerror(*result) : detail;
}

HTTPTransfer& HTTPTransfer::of(CURL* easy) {
    HTTPTransfer* transfer = nullptr;
    curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
    return *transfer;
}

void HTTPTransfer::end(std::optional<CURLcode> code) {
    result = code;
    sem_post(&ended);
}

std::size_t HTTPTransfer::receive(char* bytes, std::size_t, std::size_t count, void* self) noexcept {
    auto& transfer = *static_cast<HTTPTransfer*>(self);
    transfer.isTooLong = count > transfer.maximumReplyBytes - transfer.replyBody.size();
    try {
        if (!transfer.isTooLong)
            transfer.replyBody.append(bytes, count);
    } catch (const std::bad_alloc&) {
        transfer.isTooLong = true; // for this machine
    }
    return transfer.isTooLong ? 0 : count; // anything but `count` ends the transfer
}

} // namespace quorl
