#include "transports/CLIOutputParser.h"

#include "base/Json.h"
#include "base/Text.h"
#include "transports/HTTPJSON.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quorl::CLIOutputParser {

namespace {

std::optional<Json::Value> firstJSONObject(std::string_view text) {
    const std::size_t first = text.find('{');
    const std::size_t last = text.rfind('}');
    if (first == std::string_view::npos || last == std::string_view::npos || last < first)
        return std::nullopt;
    return Json::parseObject(text.substr(first, last - first + 1));
}

std::string firstNonEmpty(std::string_view preferred, std::string_view otherwise) {
    return std::string(preferred.empty() ? otherwise : preferred);
}

std::optional<std::int64_t> summedModelUsage(const Json::Value& json, std::string_view key) {
    std::optional<std::int64_t> sum;
    const Json::Value* const usage = Json::object(Json::find(json, "modelUsage"));
    if (!usage)
        return sum;
    for (const Json::Value& model : *usage) {
        const auto count = HTTPJSON::count(Json::find(Json::object(&model), key));
        std::int64_t total = 0;
        if (count && !__builtin_add_overflow(sum.value_or(0), *count, &total))
            sum = total;
    }
    return sum;
}

ParsedCLI plainClaude(std::string_view output, std::string_view standardError) {
    ParsedCLI parsed;
    parsed.text = firstNonEmpty(output, Text::trimmed(standardError));
    if (parsed.text.empty())
        parsed.error = "Claude Code returned no output.";
    return parsed;
}

std::optional<std::string> claudeError(const Json::Value& json, const std::string& text,
                                       std::string_view standardError) {
    if (!Json::boolean(Json::find(json, "is_error")).value_or(false)) {
        if (!text.empty())
            return std::nullopt;
        return firstNonEmpty(Text::trimmed(standardError), "Claude Code returned an empty response.");
    }
    if (const std::string* const message =
            Json::text(Json::find(Json::object(Json::find(json, "error")), "message")))
        return *message;
    return firstNonEmpty(text, "Claude Code reported an error.");
}

const std::string* nonEmptyText(const Json::Value* value) {
    const std::string* const text = Json::text(value);
    return text && !text->empty() ? text : nullptr;
}

const std::string* stringMessage(const Json::Value& json) {
    if (const std::string* const message = nonEmptyText(Json::find(json, "message")))
        return message;
    const Json::Value* const error = Json::find(json, "error");
    if (const std::string* const message = nonEmptyText(Json::find(Json::object(error), "message")))
        return message;
    return nonEmptyText(error);
}

void readCodexEvent(const Json::Value& event, ParsedCLI& parsed) {
    const std::string* const type = Json::text(Json::find(event, "type"));
    if (!type)
        return;
    if (*type == "item.completed" || *type == "item.started") {
        const Json::Value* const item = Json::object(Json::find(event, "item"));
        const std::string* const kind = Json::text(Json::find(item, "type"));
        const std::string* const text = nonEmptyText(Json::find(item, "text"));
        if (kind && *kind == "agent_message" && text)
            parsed.text = *text;
    } else if (*type == "turn.completed") {
        const Json::Value* const usage = Json::object(Json::find(event, "usage"));
        if (const auto count = HTTPJSON::count(Json::find(usage, "input_tokens")))
            parsed.inputTokens = count;
        if (const auto count = HTTPJSON::count(Json::find(usage, "output_tokens")))
            parsed.outputTokens = count;
    } else if (*type == "turn.failed" || *type == "error") {
        if (const std::string* const message = stringMessage(event))
            parsed.error = *message;
    }
}

// Calls `visit` with each piece of `text` between `ends`, but for empty ones.
template <std::size_t count, class Visit>
void forEachLine(std::string_view text, const std::array<std::string_view, count>& ends, Visit visit) {
    std::array<std::size_t, count> found{}; // where each of the ends comes next
    for (std::size_t index = 0; index < count; ++index)
        found[index] = text.find(ends[index]);
    for (std::size_t start = 0; start < text.size();) {
        const auto next = std::min_element(found.begin(), found.end());
        const std::size_t stop = std::min(*next, text.size());
        if (stop > start)
            visit(text.substr(start, stop - start));
        const auto index = static_cast<std::size_t>(next - found.begin());
        start = stop + ends[index].size();
        *next = text.find(ends[index], start);
    }
}

constexpr std::array<std::string_view, 4> asciiLineEnds{"\n", "\r", "\v", "\f"};
constexpr std::array<std::string_view, 3> unicodeLineEnds{"\u0085", "\u2028", "\u2029"};

// Unlike the ASCII line ends, the others may stand bare inside a JSON text, where they end no line.
void readCodexLine(std::string_view line, ParsedCLI& parsed) {
    const auto read = [&](std::string_view part) {
        const auto event = firstJSONObject(stripANSI(part));
        if (event)
            readCodexEvent(*event, parsed);
        return event.has_value();
    };
    if (!read(line))
        forEachLine(line, unicodeLineEnds, read);
}

} // namespace

ParsedCLI parseClaude(std::string_view standardOutput, std::string_view standardError) {
    const std::string stripped = stripANSI(standardOutput);
    const std::string_view output = Text::trimmed(stripped);
    const auto json = firstJSONObject(output);
    if (!json)
        return plainClaude(output, standardError);

    ParsedCLI parsed;
    if (const std::string* const text = Json::text(Json::find(*json, "result")))
        parsed.text = *text;
    parsed.error = claudeError(*json, parsed.text, standardError);
    const Json::Value* const usage = Json::object(Json::find(*json, "usage"));
    parsed.inputTokens = HTTPJSON::count(Json::find(usage, "input_tokens"));
    if (!parsed.inputTokens)
        parsed.inputTokens = summedModelUsage(*json, "inputTokens");
    parsed.outputTokens = HTTPJSON::count(Json::find(usage, "output_tokens"));
    if (!parsed.outputTokens)
        parsed.outputTokens = summedModelUsage(*json, "outputTokens");
    parsed.costUSD = Json::number(Json::find(*json, "total_cost_usd"));
    if (!parsed.costUSD)
        parsed.costUSD = Json::number(Json::find(*json, "cost_usd"));
    return parsed;
}

ParsedCLI parseCodex(std::string_view standardOutput, std::string_view standardError) {
    ParsedCLI parsed;
    forEachLine(standardOutput, asciiLineEnds, [&](std::string_view line) { readCodexLine(line, parsed); });
    if (parsed.text.empty() && !parsed.error)
        parsed.error = firstNonEmpty(Text::trimmed(standardError), "Codex returned no assistant message.");
    return parsed;
}

std::string stripANSI(std::string_view text) {
    constexpr std::string_view introducer = "\x1b[";
    std::string stripped;
    while (true) {
        const std::size_t start = text.find(introducer);
        stripped += text.substr(0, start);
        if (start == std::string_view::npos)
            return stripped;
        text.remove_prefix(start + introducer.size());
        const auto end = std::find_if(text.begin(), text.end(), [](char c) { return c >= '@' && c <= '~'; });
        if (end == text.end())
            return stripped;
        text.remove_prefix(static_cast<std::size_t>(end - text.begin()) + 1);
    }
}

} // namespace quorl::CLIOutputParser
