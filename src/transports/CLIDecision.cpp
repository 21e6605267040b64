#include "transports/CLIDecision.h"

#include "base/Text.h"

#include <utility>

namespace quorl {

RawDecision decisionOf(const ProcessRunner::Result& result, const CLITool& tool) {
    if (result.launchError)
        return RawDecision::failed(*result.launchError);
    if (result.timedOut)
        return RawDecision::failed(tool.name + " timed out after 3 minutes.");
    ParsedCLI parsed = tool.parse(result.standardOutput, result.standardError);
    if (result.code != 0 && !parsed.error && parsed.text.empty()) {
        const std::string_view error = Text::trimmed(result.standardError);
        return RawDecision::failed(error.empty() ? tool.name + " exited with status " +
                                                       std::to_string(result.code) + "."
                                                 : std::string(error));
    }
    RawDecision decision;
    decision.text = std::move(parsed.text);
    decision.inputTokens = parsed.inputTokens;
    decision.outputTokens = parsed.outputTokens;
    decision.reportedCost = parsed.costUSD;
    decision.errorMessage = std::move(parsed.error);
    return decision;
}

} // namespace quorl
