#pragma once

#include "sample-endpoint/Format.h"

#include <string_view>

namespace quorl::sample {

// Anthropic's Messages: POST <any prefix>/v1/messages, with any key.
// https://docs.anthropic.com/en/api/messages
class AnthropicMessages : public Format {
public:
    // Whether the text stands alone or follows a block of another kind, which has none.
    enum class Content { text, afterThinking };

    [[nodiscard]] static Reply reply(const Completion& completion, std::string_view modelIdentifier,
                                     Content content = Content::text);

    [[nodiscard]] bool takes(const Request& request) const override;
    [[nodiscard]] std::variant<Question, Reply> read(const Request& request) const override;
    [[nodiscard]] Reply answer(const Question& question, const Completion& completion) const override;
    [[nodiscard]] Reply failure(int status, std::string_view message) const override;
};

} // namespace quorl::sample
