#pragma once

#include "app/ScoreMath.h"
#include "base/Attempt.h"
#include "domain/Records.h"

#include <span>
#include <string>

// The bytes of the two files that leave the program, UTF-8 without a byte-order mark and without a line end
// after the last line. Thread: any.
namespace quorl::ExportData {

/// Comma-separated values (RFC 4180, with a single line feed between lines), a header first. Numbers have a
/// full stop as decimal mark, whatever the locale. What is not known is an empty field. Failures: none.
[[nodiscard]] std::string scoresCSV(std::span<const ScoreRow> rows);

/// One JSON text per line, the shape in which chat models are fine-tuned: {"messages":[{"role":…,
/// "content":…}, …]}. An example without system instructions has no such message. Fails as a whole if a text
/// of any example is not UTF-8.
[[nodiscard]] Attempt<std::string> fineTuneJSONL(std::span<const DatasetExample* const> examples);

} // namespace quorl::ExportData
