#pragma once

#include "sample-endpoint/Reply.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

// Everything that a server can do wrong, as replies. Thread: any. Failures: none.
namespace quorl::sample::Fault {

/// The request is read and nothing ever comes back.
[[nodiscard]] Reply neverAnswer();

[[nodiscard]] Reply closeBeforeAnswer();
[[nodiscard]] Reply resetBeforeAnswer();

/// The head promises `body` whole; the first `sent` bytes of it come, then the connection is reset.
[[nodiscard]] Reply resetMidBody(const std::string& body, std::size_t sent);

/// The same, but the connection is closed in order.
[[nodiscard]] Reply truncatedBody(const std::string& body, std::size_t sent);

/// The head promises only `claimed` bytes of the `body` that is sent; then the connection is closed.
[[nodiscard]] Reply understatedLength(std::string body, std::size_t claimed);

/// A body that never ends, in chunks.
[[nodiscard]] Reply endlessChunks();

/// A body that never ends, under a length that no memory holds.
[[nodiscard]] Reply endlessLength();

/// A body of exactly so many bytes of "x", which is not held in memory.
[[nodiscard]] Reply largeBody(std::uint64_t bytes);

/// A body of so many arrays, each in the one before.
[[nodiscard]] Reply nestedBody(std::uint64_t levels);

/// 301, 302, 307 or 308 to `location`.
[[nodiscard]] Reply redirect(int status, std::string location);

/// `reply` a few bytes at a time.
[[nodiscard]] Reply slowDrip(Reply reply, std::size_t bytes, std::chrono::milliseconds pause);

/// Bytes that are no HTTP, then the end of the connection.
[[nodiscard]] Reply garbage();

} // namespace quorl::sample::Fault
