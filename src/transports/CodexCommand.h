#pragma once

#include <string>
#include <vector>

// The words of a question to Codex, up to the question itself. Thread: any.
namespace quorl::CodexCommand {

[[nodiscard]] std::vector<std::string> arguments(const std::string& modelIdentifier);

} // namespace quorl::CodexCommand
