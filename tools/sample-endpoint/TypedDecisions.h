#pragma once

#include "sample-endpoint/Format.h"

#include <string_view>

namespace quorl::sample {

// The decision format: POST <any prefix>/veritor or <any prefix>/decisions, with or without a key. A
// completion's text is the JSON object of the answers.
class TypedDecisions : public Format {
public:
    // The two families of names that the counts have.
    enum class Usage { inputAndOutput, promptAndCompletion };

    // Where a failure has its sentence: {"error":"…"}, {"error":{"message":"…"}} or {"message":"…"}.
    enum class Error { text, object, message };

    [[nodiscard]] static Reply reply(const Completion& completion, std::string_view modelIdentifier,
                                     Usage usage = Usage::inputAndOutput);
    [[nodiscard]] static Reply errorReply(int status, std::string_view message, Error error = Error::text);

    [[nodiscard]] bool takes(const Request& request) const override;
    [[nodiscard]] std::variant<Question, Reply> read(const Request& request) const override;
    [[nodiscard]] Reply answer(const Question& question, const Completion& completion) const override;
    [[nodiscard]] Reply failure(int status, std::string_view message) const override;
};

} // namespace quorl::sample
