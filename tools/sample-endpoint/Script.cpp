#include "sample-endpoint/Script.h"

#include <iterator>

namespace quorl::sample {

namespace {

Answer take(std::deque<Answer>& turns) {
    auto answer = turns.front();
    if (turns.size() > 1)
        turns.pop_front();
    return answer;
}

} // namespace

void Script::set(std::string_view model, std::vector<Answer> answers) {
    const MutexLock guard(lock);
    told[std::string(model)].assign(std::make_move_iterator(answers.begin()),
                                    std::make_move_iterator(answers.end()));
}

void Script::refuse(std::string_view model, std::string_view parameter) {
    const MutexLock guard(lock);
    refused.emplace(model, parameter);
}

Script::Turns* Script::turnsOf(std::string_view model) {
    const auto found = told.find(model);
    return found == told.end() || found->second.empty() ? nullptr : &found->second;
}

std::optional<Answer> Script::next(std::string_view model) {
    const MutexLock guard(lock);
    auto* turns = turnsOf(model);
    if (!turns)
        turns = turnsOf(everyModel);
    if (!turns)
        return std::nullopt;
    return take(*turns);
}

std::optional<Reply> Script::nextForAnyRequest() {
    const MutexLock guard(lock);
    auto* const turns = turnsOf(everyModel);
    if (!turns || !std::holds_alternative<Reply>(turns->front()))
        return std::nullopt;
    return std::get<Reply>(take(*turns));
}

std::optional<std::string> Script::refusedParameter(const Question& question) const {
    const MutexLock guard(lock);
    for (const auto& parameter : question.parameters) {
        if (refused.contains({question.modelIdentifier, parameter}) ||
            refused.contains({std::string(everyModel), parameter}))
            return parameter;
    }
    return std::nullopt;
}

} // namespace quorl::sample
