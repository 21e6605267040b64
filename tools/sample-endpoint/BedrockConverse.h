#pragma once

#include "sample-endpoint/Format.h"
#include "sample-endpoint/SignatureCheck.h"

#include <string_view>
#include <utility>
#include <vector>

namespace quorl::sample {

// Amazon Bedrock's Converse: POST /model/<id, percent-encoded>/converse, signed.
// https://docs.aws.amazon.com/bedrock/latest/APIReference/API_runtime_Converse.html
class BedrockConverse : public Format {
public:
    explicit BedrockConverse(std::vector<SigningCredentials> credentials)
        : accepted(std::move(credentials)) {}

    // Whether the text stands alone or follows a part of another kind, which has none.
    enum class Content { text, afterReasoning };

    [[nodiscard]] static Reply reply(const Completion& completion, Content content = Content::text);

    [[nodiscard]] bool takes(const Request& request) const override;
    [[nodiscard]] std::variant<Question, Reply> read(const Request& request) const override;
    [[nodiscard]] Reply answer(const Question& question, const Completion& completion) const override;
    [[nodiscard]] Reply failure(int status, std::string_view message) const override;

private:
    const std::vector<SigningCredentials> accepted;
};

} // namespace quorl::sample
