#pragma once

#include <string>
#include <vector>

// The words of a question to Claude Code; the question itself goes to standard input. Thread: any.
namespace quorl::ClaudeCommand {

[[nodiscard]] std::vector<std::string> arguments(const std::string& modelIdentifier,
                                                 const std::string& systemPrompt);

} // namespace quorl::ClaudeCommand
