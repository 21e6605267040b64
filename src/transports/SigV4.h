#pragma once

#include "base/Date.h"

#include <map>
#include <string>
#include <string_view>

// AWS Signature Version 4 (https://docs.aws.amazon.com/IAM/latest/UserGuide/create-signed-request.html), from
// SHA-256 and HMAC alone. Two choices are ours: the hash of the body is always sent and signed, and the path
// is signed as it stands in the URL, without a second percent-encoding. Pure functions. Thread: any.
// Failures: none.
namespace quorl::SigV4 {

using Headers = std::map<std::string, std::string>;

struct Credentials {
    std::string accessKey;
    std::string secretKey;
    std::string sessionToken; // empty when not used
};

// What a signature is good for.
struct Service {
    std::string region;
    std::string name;
};

struct SignedRequest {
    std::string url;
    Headers headers; // all that has to be sent, "Authorization" included
    std::string body;

    bool operator==(const SignedRequest&) const = default;
};

/// `url` is absolute and percent-encoded; it and `body` have to be sent exactly as they come back.
[[nodiscard]] SignedRequest sign(std::string_view method, std::string url, std::string body,
                                 const Headers& extraHeaders, const Credentials& credentials,
                                 const Service& service, Date date);

/// "20150830T123600Z".
[[nodiscard]] std::string timestamp(Date date);

// The steps of `sign`.

/// Of `headers` all are signed.
[[nodiscard]] std::string canonicalRequest(std::string_view method, std::string_view url,
                                           const Headers& headers, std::string_view payloadHash);

/// Raw bytes; `day` is the first eight characters of a timestamp.
[[nodiscard]] std::string signingKey(std::string_view secretKey, std::string_view day,
                                     const Service& service);

/// SHA-256 in lower-case hexadecimal.
[[nodiscard]] std::string hash(std::string_view bytes);

[[nodiscard]] std::string hex(std::string_view bytes);

} // namespace quorl::SigV4
