#include "sample-endpoint/SampleEndpoint.h"

#include "base/Json.h"
#include "sample-endpoint/Certificate.h"
#include "sample-endpoint/Connection.h"
#include "sample-endpoint/SampleAnswers.h"
#include "sample-endpoint/SampleDecisions.h"

#include <algorithm>
#include <array>
#include <optional>
#include <thread>
#include <utility>

namespace quorl::sample {

namespace {

using asio::ip::tcp;

asio::ssl::context makeTLSContext() {
    asio::ssl::context context(asio::ssl::context::tls_server);
    const auto [certificate, key] = makeThrowAwayCertificate();
    context.use_certificate(asio::buffer(certificate), asio::ssl::context::pem);
    context.use_private_key(asio::buffer(key), asio::ssl::context::pem);
    return context;
}

} // namespace

class SampleEndpoint::Server {
public:
    explicit Server(EndpointOptions options)
        : journal(options.record),
          onRequest(std::move(options.onRequest)), formats{std::make_unique<OpenAIChat>(),
                                                           std::make_unique<AnthropicMessages>(),
                                                           std::make_unique<BedrockConverse>(
                                                               std::move(options.signers)),
                                                           std::make_unique<TypedDecisions>()},
          acceptor(context, tcp::endpoint(asio::ip::address_v4::loopback(), options.port)),
          acceptAgain(context), boundPort(acceptor.local_endpoint().port()) {
        if (options.security == Security::selfSignedTLS)
            tls.emplace(makeTLSContext());
        accept();
        thread = std::thread([this] { context.run(); });
    }

    ~Server() {
        context.stop();
        thread.join();
    }

    std::string baseURL() const {
        return (tls ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(boundPort) + "/v1";
    }

    std::uint16_t port() const { return boundPort; }

    Script script;
    Journal journal;

private:
    void accept() {
        acceptor.async_accept([this](const std::error_code& error, tcp::socket socket) {
            if (!error)
                welcome(std::move(socket));
            else if (error == std::errc::too_many_files_open ||
                     error == std::errc::too_many_files_open_in_system)
                return waitForDescriptors();
            accept();
        });
    }

    // The client stays in the queue of the kernel until a descriptor is free for it.
    void waitForDescriptors() {
        acceptAgain.expires_after(std::chrono::milliseconds(10));
        acceptAgain.async_wait([this](const std::error_code&) { accept(); });
    }

    void welcome(tcp::socket socket) {
        std::error_code ignored; // a client that has gone again shows when it is read from
        socket.set_option(tcp::no_delay(true), ignored);
        ++connections;
        if (tls)
            std::make_shared<Connection<asio::ssl::stream<tcp::socket>>>(
                asio::ssl::stream<tcp::socket>(std::move(socket), *tls), judge, connections)
                ->start();
        else
            std::make_shared<Connection<tcp::socket>>(std::move(socket), judge, connections)->start();
    }

    Reply replyTo(const Request& request) {
        journal.add(request);
        if (onRequest)
            onRequest(request);

        const auto format =
            std::ranges::find_if(formats, [&](const auto& each) { return each->takes(request); });
        if (format == formats.end())
            return script.nextForAnyRequest().value_or(nothingThere(request));
        auto read = (*format)->read(request);
        if (auto* const refusal = std::get_if<Reply>(&read))
            return script.nextForAnyRequest().value_or(std::move(*refusal));
        return replyTo(std::get<Question>(read), **format);
    }

    Reply replyTo(const Question& question, const Format& format) {
        if (const auto parameter = script.refusedParameter(question))
            return format.failure(400, "Unsupported parameter: '" + *parameter +
                                           "' is not supported with this model.");
        const auto told = script.next(question.modelIdentifier);
        if (!told) {
            const auto completion = question.decisions.empty() ? SampleAnswers::answer(question)
                                                               : SampleDecisions::answer(question);
            return completion ? format.answer(question, *completion)
                              : format.failure(503, "This sample model is always overloaded.");
        }
        if (const auto* const reply = std::get_if<Reply>(&*told))
            return *reply;
        return format.answer(question, std::get<Completion>(*told));
    }

    static Reply nothingThere(const Request& request) {
        auto message = "Nothing answers " + request.method + " " + request.path + " here.";
        return makeReply(404, Json::write({{"error", {{"message", message}}}}).value_or("{}"));
    }

    const std::function<void(const Request&)> onRequest;
    const std::array<std::unique_ptr<Format>, 4> formats;
    // The connections borrow it, and they die with `context`.
    const Judge judge = [this](const Request& request) { return replyTo(request); };
    std::optional<asio::ssl::context> tls;
    asio::io_context context{1};
    tcp::acceptor acceptor;
    asio::steady_timer acceptAgain;
    const std::uint16_t boundPort;
    std::uint64_t connections = 0; // so far
    std::thread thread;
};

SampleEndpoint::SampleEndpoint(EndpointOptions options)
    : server(std::make_unique<Server>(std::move(options))) {}

SampleEndpoint::~SampleEndpoint() = default;

std::string SampleEndpoint::baseURL() const {
    return server->baseURL();
}

std::uint16_t SampleEndpoint::port() const {
    return server->port();
}

void SampleEndpoint::answer(std::string_view modelIdentifier, Answer answer) {
    answerInTurn(modelIdentifier, {std::move(answer)});
}

void SampleEndpoint::answerInTurn(std::string_view modelIdentifier, std::vector<Answer> answers) {
    server->script.set(modelIdentifier, std::move(answers));
}

void SampleEndpoint::refuseParameter(std::string_view modelIdentifier, std::string_view parameter) {
    server->script.refuse(modelIdentifier, parameter);
}

std::vector<Request> SampleEndpoint::requests() const {
    return server->journal.requests();
}

bool SampleEndpoint::waitForRequests(std::size_t count, std::chrono::milliseconds deadline) const {
    return server->journal.waitFor(count, deadline);
}

} // namespace quorl::sample
