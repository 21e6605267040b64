#include "app/AppModel.h"
#include "base/Json.h"
#include "base/Text.h"

#include <algorithm>

namespace quorl {

namespace {

constexpr const char* notNames = "models must be a list of names or ids.";

// Nothing if the value is neither a text nor a list of texts.
std::optional<std::vector<std::string_view>> readNames(const Json::Value& named) {
    if (const std::string* name = Json::text(&named))
        return std::vector<std::string_view>{*name};
    if (!named.is_array())
        return std::nullopt;
    std::vector<std::string_view> names;
    for (const Json::Value& element : named) {
        const std::string* name = Json::text(&element);
        if (!name)
            return std::nullopt;
        names.push_back(*name);
    }
    return names;
}

// By id, else by name or by what the provider calls it.
std::vector<const ModelProfile*> modelsCalled(std::string_view name, const Library& library) {
    std::vector<const ModelProfile*> called;
    if (const auto id = UUID::parse(name)) {
        if (const ModelProfile* model = library.findModel(*id))
            called.push_back(model);
        return called;
    }
    for (const ModelProfile& model : library.models()) {
        if (Text::equalsIgnoringCase(model.name, name) ||
            Text::equalsIgnoringCase(model.modelIdentifier, name))
            called.push_back(&model);
    }
    return called;
}

} // namespace

std::vector<ModelProfile> AppModel::readyModels(QuorlKind kind) const {
    std::vector<ModelProfile> ready;
    for (const ModelProfile& model : library.models()) {
        if (family(model.provider) == kind && readiness(model).state == Readiness::State::ready)
            ready.push_back(model);
    }
    return ready;
}

std::optional<std::string> AppModel::whyNotInBatch(const ModelProfile& model, QuorlKind kind) const {
    const Readiness found = readiness(model);
    const std::string cannot = model.name + " cannot run this batch. ";
    if (found.state == Readiness::State::blocked)
        return cannot + found.message;
    if (found.state == Readiness::State::disabled || family(model.provider) != kind)
        return cannot + "It is not ready for " + std::string(rawString(kind)) + ".";
    return std::nullopt;
}

AppModel::ResolvedModels AppModel::resolveAPIModels(const Json::Value* named, QuorlKind kind) const {
    if (!named || named->is_null())
        return {readyModels(kind), std::nullopt};
    const auto names = readNames(*named);
    if (!names)
        return {{}, notNames};
    if (names->empty())
        return {readyModels(kind), std::nullopt};

    std::vector<ModelProfile> models; // with one that is named twice standing twice
    for (const std::string_view sent : *names) {
        const std::string name(Text::trimmed(sent));
        const auto called = modelsCalled(name, library);
        if (called.size() > 1)
            return {{}, name + " matches more than one model. Use its id."};
        if (called.empty())
            return {{}, "No model named " + name + "."};
        if (auto reason = whyNotInBatch(*called.front(), kind))
            return {{}, std::move(reason)};
        models.push_back(*called.front());
    }
    return {std::move(models), std::nullopt};
}

} // namespace quorl
