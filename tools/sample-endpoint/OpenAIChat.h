#pragma once

#include "sample-endpoint/Format.h"

#include <string_view>

namespace quorl::sample {

// OpenAI's chat completions: POST <any prefix>/chat/completions.
// https://platform.openai.com/docs/api-reference/chat
class OpenAIChat : public Format {
public:
    // Where the text stands: as the message's content, as an array of two text parts, or beside no message at
    // all, as the older completions have it.
    enum class Content { text, parts, completion };

    // `counts` are those of the completion; a completion without any has no usage.
    enum class Usage { counts, null };

    [[nodiscard]] static Reply reply(const Completion& completion, std::string_view modelIdentifier,
                                     Content content = Content::text, Usage usage = Usage::counts);

    [[nodiscard]] bool takes(const Request& request) const override;
    [[nodiscard]] std::variant<Question, Reply> read(const Request& request) const override;
    [[nodiscard]] Reply answer(const Question& question, const Completion& completion) const override;
    [[nodiscard]] Reply failure(int status, std::string_view message) const override;
};

} // namespace quorl::sample
