#pragma once

#include "sample-endpoint/Fault.h"
#include "sample-endpoint/Format.h"
#include "sample-endpoint/OpenAIChat.h"
#include "sample-endpoint/Reply.h"
#include "sample-endpoint/Request.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quorl::sample {

// What a model is told to answer: a completion, in the format of the request, or the very bytes.
using Answer = std::variant<Completion, Reply>;

// In place of a model's id: all models that have been told nothing of their own.
inline constexpr std::string_view everyModel = "*";

enum class Security { none, selfSignedTLS };

// Whether `requests` keeps what came in. Off, the endpoint may run for days.
enum class Record { keep, drop };

struct EndpointOptions {
    std::uint16_t port = 0; // 0 is any free one
    Security security = Security::none;
    Record record = Record::keep;
    std::function<void(const Request&)> onRequest = {}; // called on the endpoint's thread, before the answer
};

// A provider of models on 127.0.0.1, for tests, benchmarks and the demo. It shares no code with the
// transports that it checks. A model that has been told nothing answers as `SampleAnswers` has it: the demo's
// models after a believable time, all others at once. Thread: any; it serves on a thread of its own, which
// ends with the object. Failures: throws std::system_error if it cannot listen.
class SampleEndpoint {
public:
    explicit SampleEndpoint(EndpointOptions options = {});
    ~SampleEndpoint();

    SampleEndpoint(const SampleEndpoint&) = delete;
    SampleEndpoint& operator=(const SampleEndpoint&) = delete;

    /// "http://127.0.0.1:PORT/v1", or with "https". Any other prefix than "/v1" is served as well.
    [[nodiscard]] std::string baseURL() const;
    [[nodiscard]] std::uint16_t port() const;

    /// From now on. A `Reply` for `everyModel` answers any request at all, whatever its method, path and
    /// body.
    void answer(std::string_view modelIdentifier, Answer answer);

    /// One after the other; the last one stays.
    void answerInTurn(std::string_view modelIdentifier, std::vector<Answer> answers);

    /// A request that has this parameter gets a 400 that names it, and uses up none of the answers in turn.
    void refuseParameter(std::string_view modelIdentifier, std::string_view parameter);

    /// In the order of arrival.
    [[nodiscard]] std::vector<Request> requests() const;

    /// Whether at least `count` requests have come in, by then.
    [[nodiscard]] bool waitForRequests(std::size_t count,
                                       std::chrono::milliseconds deadline = std::chrono::seconds(60)) const;

private:
    class Server;
    std::unique_ptr<Server> server;
};

} // namespace quorl::sample
