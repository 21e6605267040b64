#pragma once

#include "sample-endpoint/Request.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorl::sample {

// One who may ask.
struct SigningCredentials {
    std::string accessKey;
    std::string secretKey;
    std::string sessionToken = {}; // where it is not empty it has to be sent
};

// The pair that AWS's own worked examples are signed with, for whoever has none.
inline const SigningCredentials publishedCredentials{"AKIDEXAMPLE",
                                                     "wJalrXUtnFEMI/K7MDENG+bPxRfiCYEXAMPLEKEY"};

/// Recomputes the AWS Signature Version 4 of a request from its very bytes, and answers with what is wrong
/// with it; nothing if it is signed by one of `accepted` for `service`. The path counts as it was sent, and
/// the hash of the body and every "x-amz-" header have to be signed. The hour does not matter.
/// https://docs.aws.amazon.com/IAM/latest/UserGuide/create-signed-request.html
[[nodiscard]] std::optional<std::string> problemWithSignature(const Request& request,
                                                              const std::vector<SigningCredentials>& accepted,
                                                              std::string_view service);

} // namespace quorl::sample
