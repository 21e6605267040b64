#include "store/Rows.h"

#include <sqlite3.h>

#include <string_view>

namespace quorl {

namespace {

constexpr int canonicalLength = 36;

// A text ends at its first NUL, as it does on the way in; NULL is the empty text.
std::string_view view(sqlite3_stmt* statement, int column) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return bytes ? std::string_view(bytes) : std::string_view();
}

std::string text(sqlite3_stmt* statement, int column) {
    return std::string(view(statement, column));
}

bool isNull(sqlite3_stmt* statement, int column) {
    return sqlite3_column_type(statement, column) == SQLITE_NULL;
}

std::optional<std::string> optionalText(sqlite3_stmt* statement, int column) {
    return isNull(statement, column) ? std::nullopt : std::optional(text(statement, column));
}

std::int64_t integer(sqlite3_stmt* statement, int column) {
    return sqlite3_column_int64(statement, column);
}

std::optional<std::int64_t> optionalInteger(sqlite3_stmt* statement, int column) {
    return isNull(statement, column) ? std::nullopt : std::optional(integer(statement, column));
}

bool flag(sqlite3_stmt* statement, int column) {
    return integer(statement, column) != 0;
}

std::optional<bool> optionalFlag(sqlite3_stmt* statement, int column) {
    return isNull(statement, column) ? std::nullopt : std::optional(flag(statement, column));
}

double real(sqlite3_stmt* statement, int column) {
    return sqlite3_column_double(statement, column);
}

std::optional<double> optionalReal(sqlite3_stmt* statement, int column) {
    return isNull(statement, column) ? std::nullopt : std::optional(real(statement, column));
}

// The date that a list is sorted by. SQLite sorts by what is stored, the mirrors by what is read.
Date sortingDate(sqlite3_stmt* statement, int column, Reading& reading) {
    if (sqlite3_column_type(statement, column) != SQLITE_FLOAT)
        reading.isRepeatable = false;
    return dateFromSeconds(real(statement, column));
}

// An identifier that may name anything; a fresh one where there is none to read.
UUID reference(sqlite3_stmt* statement, int column, Reading& reading) {
    if (const auto id = UUID::parse(view(statement, column)))
        return *id;
    reading.isRepeatable = false;
    return UUID::random();
}

std::optional<UUID> optionalReference(sqlite3_stmt* statement, int column) {
    return UUID::parse(view(statement, column));
}

ProviderKind provider(sqlite3_stmt* statement, int column) {
    return providerKindFrom(view(statement, column)).value_or(ProviderKind::openAI);
}

QuorlKind kind(sqlite3_stmt* statement, int column) {
    return quorlKindFrom(view(statement, column)).value_or(QuorlKind::decision);
}

// Whether a text of hexadecimal digits and dashes has lower-case ones: of these characters they alone have
// both bits. Without an early end, which lets the compiler take many at a time; this runs twice for each
// answer of a library.
bool hasLowerCaseDigits(std::string_view digits) {
    unsigned both = 0;
    for (const char digit : digits)
        both |= static_cast<unsigned>(digit) & static_cast<unsigned>(digit) << 1 & 0x40u;
    return both != 0;
}

} // namespace

UUID readKey(sqlite3_stmt* statement, int column, Reading& reading) {
    // Asked before the text is, which may convert the value in place.
    const bool isText = sqlite3_column_type(statement, column) == SQLITE_TEXT;
    const std::string_view stored = view(statement, column);
    const auto id = UUID::parse(stored);
    // Our statements compare with the upper-case text: any other value that reads as the same identifier
    // escapes them.
    if (!isText || !id || sqlite3_column_bytes(statement, column) != canonicalLength ||
        hasLowerCaseDigits(stored))
        reading.isRepeatable = false;
    return id ? *id : UUID::random();
}

template <>
ModelProfile readRow<ModelProfile>(sqlite3_stmt* row, Reading& reading) {
    ModelProfile model;
    model.id = readKey(row, 0, reading);
    model.name = text(row, 1);
    model.provider = provider(row, 2);
    model.modelIdentifier = text(row, 3);
    model.endpoint = text(row, 4);
    model.executablePath = text(row, 5);
    model.inputPricePerMillion = real(row, 6);
    model.outputPricePerMillion = real(row, 7);
    model.maxOutputTokens = integer(row, 8);
    model.enabled = flag(row, 9);
    model.notes = text(row, 10);
    model.sortIndex = integer(row, 11);
    return model;
}

template <>
Category readRow<Category>(sqlite3_stmt* row, Reading& reading) {
    Category category;
    category.id = readKey(row, 0, reading);
    category.name = text(row, 1);
    category.parentID = optionalReference(row, 2);
    category.sortIndex = integer(row, 3);
    return category;
}

template <>
QuorlRun readRow<QuorlRun>(sqlite3_stmt* row, Reading& reading) {
    QuorlRun run;
    run.id = readKey(row, 0, reading);
    run.kind = kind(row, 1);
    run.prompt = text(row, 2);
    run.systemPrompt = text(row, 3);
    run.categoryID = optionalReference(row, 4);
    run.scoringMode = scoringModeFrom(view(row, 5)).value_or(ScoringMode::binary);
    run.createdAt = sortingDate(row, 6, reading);
    run.questionsJSON = text(row, 7);
    run.batchID = optionalReference(row, 8);
    // A run of unknown origin is the app's own, a batch of unknown source a client's.
    run.origin = runOriginFrom(view(row, 9)).value_or(RunOrigin::app);
    return run;
}

template <>
QuorlBatch readRow<QuorlBatch>(sqlite3_stmt* row, Reading& reading) {
    QuorlBatch batch;
    batch.id = readKey(row, 0, reading);
    batch.name = text(row, 1);
    batch.source = runOriginFrom(view(row, 2)).value_or(RunOrigin::api);
    batch.kind = kind(row, 3);
    batch.createdAt = sortingDate(row, 4, reading);
    batch.status = batchStatusFrom(view(row, 5)).value_or(BatchStatus::done);
    return batch;
}

template <>
ModelAnswer readRow<ModelAnswer>(sqlite3_stmt* row, Reading& reading) {
    ModelAnswer answer;
    answer.id = readKey(row, 0, reading);
    answer.runID = readKey(row, 1, reading);
    answer.modelID = reference(row, 2, reading);
    answer.modelName = text(row, 3);
    answer.provider = provider(row, 4);
    answer.position = integer(row, 5);
    answer.state = answerStateFrom(view(row, 6)).value_or(AnswerState::failed);
    answer.text = text(row, 7);
    answer.latencyMS = integer(row, 8);
    answer.inputTokens = optionalInteger(row, 9);
    answer.outputTokens = optionalInteger(row, 10);
    answer.tokensEstimated = flag(row, 11);
    answer.costUSD = optionalReal(row, 12);
    answer.errorMessage = optionalText(row, 13);
    answer.chosenCorrect = flag(row, 14);
    answer.accepted = optionalFlag(row, 15);
    answer.rating = optionalInteger(row, 16);
    answer.datasetID = optionalReference(row, 17);
    return answer;
}

template <>
DatasetExample readRow<DatasetExample>(sqlite3_stmt* row, Reading& reading) {
    DatasetExample example;
    example.id = readKey(row, 0, reading);
    example.createdAt = sortingDate(row, 1, reading);
    example.categoryID = optionalReference(row, 2);
    example.kind = kind(row, 3);
    example.prompt = text(row, 4);
    example.systemPrompt = text(row, 5);
    example.completion = text(row, 6);
    example.modelName = text(row, 7);
    example.provider = provider(row, 8);
    example.rating = optionalInteger(row, 9);
    example.accepted = optionalFlag(row, 10);
    example.answerID = reference(row, 11, reading);
    return example;
}

} // namespace quorl
