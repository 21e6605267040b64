#pragma once

#include "app/HTTPMessage.h"

#include <string_view>

namespace quorl {

class AppModel;

// The routes of the local API; docs/api.md tells them to their users.
namespace QuorlAPI {

/// Whether the request carries the token, as "Authorization: Bearer" and one blank. Thread: any.
[[nodiscard]] bool authorized(const HTTPRequest& request, std::string_view token);

/// Does what the request asks and answers. Thread: main.
[[nodiscard]] HTTPResponse respond(const HTTPRequest& request, AppModel& app);

} // namespace QuorlAPI
} // namespace quorl
