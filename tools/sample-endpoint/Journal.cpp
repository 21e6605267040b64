#include "sample-endpoint/Journal.h"

#include "base/Json.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quorl::sample {

namespace {

bool carriesKey(std::string_view name) {
    constexpr std::array<std::string_view, 5> names{"authorization", "proxy-authorization", "x-api-key",
                                                    "x-amz-security-token", "cookie"};
    return std::ranges::any_of(names, [&](std::string_view each) { return sameHeaderName(each, name); });
}

// JSON has no place for bytes that are not UTF-8; how many there were is what is left to tell.
Json::Value textOrLength(const std::string& bytes) {
    return Text::isUTF8(bytes) ? Json::Value(bytes) : Json::Value(bytes.size());
}

} // namespace

void Journal::add(const Request& request) {
    {
        const std::lock_guard guard(lock);
        ++count;
        if (record == Record::keep)
            kept.push_back(request);
    }
    added.notify_all();
}

std::vector<Request> Journal::requests() const {
    const std::lock_guard guard(lock);
    return kept;
}

bool Journal::waitFor(std::size_t wanted, std::chrono::milliseconds deadline) const {
    std::unique_lock guard(lock);
    return added.wait_for(guard, deadline, [&] { return count >= wanted; });
}

std::string journalLine(const Request& request) {
    auto headers = Json::Value::object();
    for (const auto& [name, value] : request.headers) {
        if (Text::isUTF8(name))
            headers[Text::lowercased(name)] =
                carriesKey(name) ? Json::Value(value.size()) : textOrLength(value);
    }
    const Json::Value line{
        {"connection", request.connection},   {"method", textOrLength(request.method)},
        {"path", textOrLength(request.path)}, {"headers", std::move(headers)},
        {"body", textOrLength(request.body)},
    };
    return Json::write(line).value_or("{}");
}

} // namespace quorl::sample
