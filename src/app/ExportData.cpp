#include "app/ExportData.h"

#include "base/Json.h"
#include "base/Text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <string_view>

namespace quorl::ExportData {

namespace {

void appendText(std::string& line, std::string_view text) {
    // A carriage return alone is no reason for quotes.
    if (text.find_first_of(",\"\n") == std::string_view::npos) {
        line += text;
        return;
    }
    line += '"';
    for (const char character : text) {
        if (character == '"')
            line += '"';
        line += character;
    }
    line += '"';
}

void appendWhole(std::string& line, std::int64_t number) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    line.append(digits.data(), end);
}

// Not printf, whose decimal mark is the C locale's. Nothing where nothing was counted.
void appendAverage(std::string& line, double sum, std::int64_t count, int decimals) {
    if (count < 1)
        return;
    constexpr std::size_t around = 16; // sign, mark and decimals
    std::array<char, std::numeric_limits<double>::max_exponent10 + around> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   sum / static_cast<double>(count), std::chars_format::fixed, decimals)
                         .ptr;
    line.append(digits.data(), end);
}

void appendRow(std::string& csv, const ScoreRow& row) {
    appendText(csv, row.modelName);
    csv += ',';
    appendText(csv, row.categoryName);
    csv += ',';
    appendWhole(csv, row.answers);
    csv += ',';
    if (const auto percent = row.correctPercent())
        appendWhole(csv, *percent);
    csv += ',';
    appendAverage(csv, static_cast<double>(row.ratingSum), row.ratingCount, 2);
    csv += ',';
    if (row.latencyCount > 0)
        appendWhole(csv, row.latencySum / row.latencyCount);
    csv += ',';
    appendAverage(csv, row.costSum, row.costCount, 6);
    csv += ',';
    appendWhole(csv, row.inputTokens);
    csv += ',';
    appendWhole(csv, row.outputTokens);
}

bool appendMessage(std::string& line, std::string_view role, std::string_view content) {
    line += R"({"content":)";
    if (!Json::appendText(line, content))
        return false;
    line += R"(,"role":")";
    line += role;
    line += "\"}";
    return true;
}

// Written piece by piece, since a dataset of years is a hundred megabytes of text.
bool appendTrainingLine(std::string& lines, const DatasetExample& example) {
    lines += R"({"messages":[)";
    // Blanks are no instructions; those around some are a part of them.
    if (!Text::isBlank(example.systemPrompt)) {
        if (!appendMessage(lines, "system", example.systemPrompt))
            return false;
        lines += ',';
    }
    if (!appendMessage(lines, "user", example.prompt))
        return false;
    lines += ',';
    if (!appendMessage(lines, "assistant", example.completion))
        return false;
    lines += "]}";
    return true;
}

// What the lines take if hardly anything in them is escaped.
std::size_t usualSize(std::span<const DatasetExample* const> examples) {
    constexpr std::size_t frame = 160;
    std::size_t size = 0;
    for (const DatasetExample* example : examples)
        size += frame + example->systemPrompt.size() + example->prompt.size() + example->completion.size();
    return size + size / 32;
}

} // namespace

std::string scoresCSV(std::span<const ScoreRow> rows) {
    std::string csv = "model,category,answers,correct_percent,average_rating,average_latency_ms,"
                      "average_cost_usd,input_tokens,output_tokens";
    constexpr std::size_t usualRow = 96;
    csv.reserve(csv.size() + rows.size() * usualRow);
    for (const ScoreRow& row : rows) {
        csv += '\n';
        appendRow(csv, row);
    }
    return csv;
}

Attempt<std::string> fineTuneJSONL(std::span<const DatasetExample* const> examples) {
    std::string lines;
    lines.reserve(usualSize(examples));
    for (const DatasetExample* example : examples) {
        if (!lines.empty())
            lines += '\n';
        if (!appendTrainingLine(lines, *example))
            return Attempt<std::string>::failure("Couldn't write the dataset as JSON.");
    }
    return Attempt<std::string>::success(std::move(lines));
}

} // namespace quorl::ExportData
