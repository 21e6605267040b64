#pragma once

#include <string>
#include <string_view>

// What sets the hosted Nuvel API apart from a Nuvel server of one's own: it asks for a key. Pure functions.
// Thread: any.
namespace quorl::Veritor {

/// Whether a base URL, with or without its scheme, names the hosted API's host or the domain above it.
[[nodiscard]] bool isHostedNuvel(std::string_view endpoint);

/// What a user of the hosted API without a key, or with a refused one, is told.
[[nodiscard]] std::string hostedKeyMessage();

} // namespace quorl::Veritor
