#pragma once

#include "sample-endpoint/Reply.h"
#include "sample-endpoint/Request.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quorl::sample {

// What a model is asked, whatever the format that it came in.
struct Question {
    std::string modelIdentifier;
    std::string systemPrompt = {}; // empty where none was sent
    std::string prompt = {};
    std::vector<std::string> parameters = {}; // the names of all that was sent beside
    std::string decisions = {}; // the typed questions on the prompt, as a JSON object; else empty
};

// What a model answers, whatever the format that it goes out in.
struct Completion {
    std::string text = {};
    std::optional<std::int64_t> inputTokens = std::nullopt; // absent: not reported
    std::optional<std::int64_t> outputTokens = std::nullopt;
    std::chrono::milliseconds delay{0};
};

// One wire format: how a question is read and an answer written. Thread: the endpoint's.
class Format {
public:
    virtual ~Format() = default;

    /// By method and path alone.
    [[nodiscard]] virtual bool takes(const Request& request) const = 0;

    /// The question, or the reply that a body which is none deserves.
    [[nodiscard]] virtual std::variant<Question, Reply> read(const Request& request) const = 0;

    [[nodiscard]] virtual Reply answer(const Question& question, const Completion& completion) const = 0;
    [[nodiscard]] virtual Reply failure(int status, std::string_view message) const = 0;
};

} // namespace quorl::sample
