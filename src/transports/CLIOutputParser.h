#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorl {

// What a run of a coding agent's tool printed, read.
struct ParsedCLI {
    std::string text; // the answer
    std::optional<std::int64_t> inputTokens;
    std::optional<std::int64_t> outputTokens;
    std::optional<double> costUSD; // as the tool reported
    std::optional<std::string> error;

    bool operator==(const ParsedCLI&) const = default;
};

// Reads what the coding agents' tools print. Thread: any. Failures: in `error`.
namespace CLIOutputParser {

/// Claude Code's single JSON result, with anything around it.
[[nodiscard]] ParsedCLI parseClaude(std::string_view standardOutput, std::string_view standardError);

/// Codex's stream of JSON lines.
[[nodiscard]] ParsedCLI parseCodex(std::string_view standardOutput, std::string_view standardError);

/// Without the terminal's control sequences (ECMA-48 CSI).
[[nodiscard]] std::string stripANSI(std::string_view text);

} // namespace CLIOutputParser
} // namespace quorl
