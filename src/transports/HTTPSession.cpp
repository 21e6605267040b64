#include "transports/HTTPSession.h"

#include "base/ThreadSafety.h"
#include "transports/HTTPTransfer.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <curl/curl.h>
#include <limits>
#include <new>
#include <optional>
#include <string_view>
#include <thread>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quorl {

namespace {

// Connections that are kept for their next use, of all hosts together: a run of several hundred models to one
// gateway finds each of its connections again.
constexpr long keptConnections = 1024;

// The hosts that the user excepts from a proxy, and this machine itself, which no proxy could reach.
std::string hostsWithoutProxy() {
    const char* users = std::getenv("no_proxy"); // NOLINT(concurrency-mt-unsafe): nothing sets variables
    if (!users)
        users = std::getenv("NO_PROXY"); // NOLINT(concurrency-mt-unsafe): the same
    if (!users || !*users)
        return "localhost,127.0.0.0/8,::1";
    if (std::string_view(users) == "*")
        return users; // stands for every host only where it stands alone
    return std::string(users) + ",localhost,127.0.0.0/8,::1";
}

// A line end inside a value would start a header of its own.
bool isHeaderValue(std::string_view value) {
    return std::none_of(value.begin(), value.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return (byte < 0x20 && byte != '\t') || byte == 0x7f;
    });
}

CURLM* makeMulti() {
    static const CURLcode isReady = curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* const multi = isReady == CURLE_OK ? curl_multi_init() : nullptr;
    if (!multi)
        throw std::bad_alloc();
    curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, keptConnections);
    curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS, 0L);
    return multi;
}

} // namespace

// The network thread and what it shares with the callers. A caller sets up a transfer on its own thread,
// hands it over, sleeps on it, and takes the outcome apart on its own thread again, so that the network
// thread does nothing but move bytes.
class HTTPSession::Loop {
public:
    explicit Loop(const Limits& given)
        : limits(given), noProxy(hostsWithoutProxy()), multi(makeMulti()), network([this] { run(); }) {}
    ~Loop();

    Attempt<HTTPReply> post(const std::string& url, const std::map<std::string, std::string>& headers,
                            std::string body);
    void close() EXCLUDES(lock);

private:
    class Visit;

    std::unique_ptr<HTTPTransfer> takeTransfer() EXCLUDES(lock);
    void keepTransfer(std::unique_ptr<HTTPTransfer> transfer) EXCLUDES(lock);
    bool handOver(HTTPTransfer& transfer) EXCLUDES(lock);

    // The network thread's.
    void run();
    bool takeOver() EXCLUDES(lock);
    void endFinished();
    void endAll();

    const Limits limits;
    const std::string noProxy;
    CURLM* const multi; // the network thread's, which frees it; others only wake it, under the lock and
                        // before the close
    std::unordered_set<HTTPTransfer*> underWay; // the network thread's

    Mutex lock;
    Condition callerLeft;
    std::vector<std::unique_ptr<HTTPTransfer>> idle GUARDED_BY(lock);
    std::vector<HTTPTransfer*> handedOver GUARDED_BY(lock);
    std::size_t callers GUARDED_BY(lock) = 0;
    bool isClosed GUARDED_BY(lock) = false;

    std::thread network; // last: it uses all of the above
};

// Counts a caller in, and out again even where there was no memory for its request.
class HTTPSession::Loop::Visit {
public:
    explicit Visit(Loop& visited) : loop(visited) {
        const MutexLock held(loop.lock);
        ++loop.callers;
    }
    ~Visit() {
        const MutexLock held(loop.lock);
        if (--loop.callers == 0)
            loop.callerLeft.notifyAll();
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

private:
    Loop& loop;
};

HTTPSession::Loop::~Loop() {
    close();
    network.join();
    MutexLock held(lock);
    while (callers > 0)
        callerLeft.wait(held);
}

Attempt<HTTPReply> HTTPSession::Loop::post(const std::string& url,
                                           const std::map<std::string, std::string>& headers,
                                           std::string body) {
    const Visit visit(*this);
    auto transfer = takeTransfer();
    transfer->prepare(url, headers, std::move(body));
    if (handOver(*transfer))
        transfer->wait();
    auto outcome = transfer->finish();
    keepTransfer(std::move(transfer));
    return outcome;
}

std::unique_ptr<HTTPTransfer> HTTPSession::Loop::takeTransfer() {
    {
        const MutexLock held(lock);
        if (!idle.empty()) {
            auto transfer = std::move(idle.back());
            idle.pop_back();
            return transfer;
        }
    }
    return std::make_unique<HTTPTransfer>(limits, noProxy);
}

// A transfer is kept to the end of the session and never freed here: the network thread may still be waking
// its caller.
void HTTPSession::Loop::keepTransfer(std::unique_ptr<HTTPTransfer> transfer) {
    const MutexLock held(lock);
    idle.push_back(std::move(transfer));
}

bool HTTPSession::Loop::handOver(HTTPTransfer& transfer) {
    const MutexLock held(lock);
    if (isClosed)
        return false;
    handedOver.push_back(&transfer);
    // The first wakes the network thread; what follows until it comes is taken over in the same go.
    if (handedOver.size() == 1)
        curl_multi_wakeup(multi);
    return true;
}

void HTTPSession::Loop::close() {
    const MutexLock held(lock);
    if (std::exchange(isClosed, true))
        return;
    curl_multi_wakeup(multi);
}

void HTTPSession::Loop::run() {
    // Signals are for the main thread, and a TLS connection that the other side has shut would raise SIGPIPE
    // here.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);

    while (takeOver()) {
        int running = 0;
        curl_multi_perform(multi, &running);
        endFinished();
        curl_multi_poll(multi, nullptr, 0, std::numeric_limits<int>::max(), nullptr);
    }
    endAll();
    curl_multi_cleanup(multi);
}

// Answers whether the session is still open.
bool HTTPSession::Loop::takeOver() {
    std::vector<HTTPTransfer*> arrived;
    bool goesOn = true;
    {
        const MutexLock held(lock);
        arrived.swap(handedOver);
        goesOn = !isClosed;
    }
    for (HTTPTransfer* const transfer : arrived) {
        underWay.insert(transfer);
        curl_multi_add_handle(multi, transfer->easy());
    }
    return goesOn;
}

void HTTPSession::Loop::endFinished() {
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(multi, &left)) {
        const CURLcode code = message->data.result; // read first: `message` goes with the handle
        HTTPTransfer& transfer = HTTPTransfer::of(message->easy_handle);
        curl_multi_remove_handle(multi, transfer.easy());
        underWay.erase(&transfer);
        transfer.end(code);
    }
}

void HTTPSession::Loop::endAll() {
    for (HTTPTransfer* const transfer : underWay) {
        curl_multi_remove_handle(multi, transfer->easy());
        transfer->end(std::nullopt);
    }
    underWay.clear();
}

HTTPSession::HTTPSession() : HTTPSession(Limits{}) {}

HTTPSession::HTTPSession(Limits limits) : loop(std::make_unique<Loop>(limits)) {}

HTTPSession::~HTTPSession() = default;

bool HTTPSession::isURL(const std::string& text) {
    // curl also reads "http:/host" and "http:///host" as if they had a host.
    const std::size_t schemeEnd = text.find("://");
    if (schemeEnd == std::string::npos || text.find('\0') != std::string::npos || text[schemeEnd + 3] == '/')
        return false;
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), curl_url_cleanup);
    if (curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) != CURLUE_OK)
        return false;
    char* scheme = nullptr;
    curl_url_get(url.get(), CURLUPART_SCHEME, &scheme, 0);
    const std::unique_ptr<char, decltype(&curl_free)> owned(scheme, curl_free);
    return std::string_view(scheme) == "http" || std::string_view(scheme) == "https";
}

Attempt<HTTPReply> HTTPSession::post(const std::string& url,
                                     const std::map<std::string, std::string>& headers, std::string body) {
    if (!isURL(url))
        return Attempt<HTTPReply>::failure("The base URL is not valid.");
    if (!std::all_of(headers.begin(), headers.end(),
                     [](const auto& header) { return isHeaderValue(header.second); }))
        return Attempt<HTTPReply>::failure(
            "The credentials hold characters that can't be sent. Check them in Models.");
    return loop->post(url, headers, std::move(body));
}

void HTTPSession::close() {
    loop->close();
}

} // namespace quorl
