#pragma once

#include "sample-endpoint/AnthropicMessages.h"
#include "sample-endpoint/BedrockConverse.h"
#include "sample-endpoint/Fault.h"
#include "sample-endpoint/Format.h"
#include "sample-endpoint/Journal.h"
#include "sample-endpoint/OpenAIChat.h"
#include "sample-endpoint/Reply.h"
#include "sample-endpoint/Request.h"
#include "sample-endpoint/Script.h"
#include "sample-endpoint/SignatureCheck.h"
#include "sample-endpoint/TypedDecisions.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorl::sample {

enum class Security { none, selfSignedTLS };

struct EndpointOptions {
    std::uint16_t port = 0; // 0 is any free one
    Security security = Security::none;
    Record record = Record::keep;
    std::function<void(const Request&)> onRequest = {}; // called on the endpoint's thread, before the answer
    std::vector<SigningCredentials> signers = {publishedCredentials}; // who may sign requests to Bedrock
};

// A provider of models on 127.0.0.1, for tests, benchmarks and the demo. It shares no code with the
// transports that it checks. A model that has been told nothing answers as `SampleAnswers` or
// `SampleDecisions` has it. Thread: any; it serves on a thread of its own, which ends with the object.
// Failures: throws std::system_error if it cannot listen.
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
