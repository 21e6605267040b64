#include "transports/NuvelLocalTransport.h"

#include "base/Json.h"
#include "base/Text.h"
#include "base/UUID.h"
#include "decision/Veritor.h"
#include "decision/VeritorResults.h"
#include "transports/HomeDirectory.h"
#include "transports/NuvelLocal.h"
#include "transports/ScratchFile.h"

#include <utility>

namespace quorl::NuvelLocalTransport {

namespace {

constexpr std::string_view defaultCheckpoint = "d41ce07/nuvel-mlx";

RawDecision notWritten(const std::string& description) {
    return RawDecision::failed("Couldn't write the Nuvel request. " + description);
}

std::string problemOf(const ProcessRunner::Result& result, const std::optional<std::string>& reported) {
    if (reported)
        return *reported;
    const std::string_view error = Text::trimmed(result.standardError);
    return error.empty() ? "nuvel-rs exited with status " + std::to_string(result.code) + "."
                         : std::string(error);
}

} // namespace

RawDecision complete(const DecisionRequest& request, const std::filesystem::path& scratch) {
    const auto executable = NuvelLocal::findExecutable(request.model.executablePath);
    if (!executable)
        return RawDecision::failed(NuvelLocal::notFound);
    const std::string_view identifier = Text::trimmed(request.model.modelIdentifier);
    const std::string model(identifier.empty() ? defaultCheckpoint : identifier);

    const std::string id = UUID::random().text();
    const auto state = stateData(request.prompt);
    if (!state)
        return notWritten(state.message());
    const auto stateFile = ScratchFile::create(scratch / ("nuvel-state-" + id + ".json"));
    if (!stateFile)
        return notWritten(stateFile.message());
    if (const auto problem = stateFile.value().write(state.value()))
        return notWritten(*problem);
    const auto questions = Veritor::wireJSON(request.questions);
    if (!questions || questions->empty())
        return RawDecision::failed("Couldn't encode the Nuvel questions.");
    const auto questionsFile = ScratchFile::create(scratch / ("nuvel-questions-" + id + ".json"));
    if (!questionsFile)
        return notWritten(questionsFile.message());
    if (const auto problem = questionsFile.value().write(*questions))
        return notWritten(*problem);

    return decisionOf(ProcessRunner::run(
        {.executable = *executable,
         .arguments = {"predict", "--model", model, "--state-file", stateFile.value().path().string(),
                       "--questions", questionsFile.value().path().string()},
         .standardInput = std::nullopt,
         .directory = scratch,
         .workingDirectory = homeDirectory(),
         .environment = ProcessRunner::childEnvironment(*executable),
         .timeout = std::chrono::seconds(180)}));
}

Attempt<std::string> stateData(std::string_view text) {
    const std::string_view trimmed = Text::trimmed(text);
    const auto document = Json::parse(trimmed);
    if (document && document->is_structured())
        return Attempt<std::string>::success(std::string(trimmed));
    auto encoded = Json::write(Json::Value(trimmed));
    if (!encoded)
        return Attempt<std::string>::failure("The state is not UTF-8.");
    return Attempt<std::string>::success(*std::move(encoded));
}

RawDecision decisionOf(const ProcessRunner::Result& result) {
    if (result.launchError)
        return RawDecision::failed(*result.launchError);
    if (result.timedOut)
        return RawDecision::failed("Nuvel timed out after 3 minutes.");
    // A tool that failed without a word on standard output has left nothing to interpret.
    if (result.code != 0 && Text::isBlank(result.standardOutput))
        return RawDecision::failed(problemOf(result, std::nullopt));
    auto interpreted = Veritor::interpret(result.standardOutput);
    RawDecision decision;
    decision.text = std::move(interpreted.pretty);
    if (result.code != 0 || interpreted.error) {
        decision.errorMessage = problemOf(result, interpreted.error);
    } else {
        decision.inputTokens = interpreted.inputTokens;
        decision.outputTokens = interpreted.outputTokens;
    }
    return decision;
}

} // namespace quorl::NuvelLocalTransport
