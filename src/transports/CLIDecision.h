#pragma once

#include "transports/CLIOutputParser.h"
#include "transports/Decision.h"
#include "transports/ProcessRunner.h"

#include <functional>
#include <string>
#include <string_view>

namespace quorl {

// A coding agent's tool, as the reading of its runs sees it.
struct CLITool {
    std::string name; // as people know it
    std::function<ParsedCLI(std::string_view standardOutput, std::string_view standardError)> parse;
};

/// What the end of a run comes to, once it may last three minutes. Thread: any.
[[nodiscard]] RawDecision decisionOf(const ProcessRunner::Result& result, const CLITool& tool);

} // namespace quorl
