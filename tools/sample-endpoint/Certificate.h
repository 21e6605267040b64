#pragma once

#include <string>

namespace quorl::sample {

// A certificate that nobody trusts, with its key; both in PEM.
struct Certificate {
    std::string certificate;
    std::string key;
};

/// For 127.0.0.1, signed by itself, valid for a day. Thread: any. Failures: throws std::runtime_error.
[[nodiscard]] Certificate makeThrowAwayCertificate();

} // namespace quorl::sample
