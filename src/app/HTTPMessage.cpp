#include "app/HTTPMessage.h"

#include "base/Json.h"

namespace quorl {

HTTPResponse makeReply(std::int64_t status, const Json::Value& value) {
    return {status, Json::write(value, Json::Layout::compact, Json::Slash::escaped).value_or("{}")};
}

HTTPResponse makeErrorReply(std::int64_t status, std::string_view message) {
    return makeReply(status, Json::Value{{"error", message}});
}

} // namespace quorl
