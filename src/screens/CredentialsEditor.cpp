#include "screens/CredentialsEditor.h"

#include "screens/Strings.h"

#include <utility>

namespace quorl {

namespace {

using Form = CredentialsEditor::Form;

Form formOf(ProviderKind kind) {
    switch (kind) {
    case ProviderKind::claudeCode:
        return Form::Login;
    case ProviderKind::codex:
        return Form::NoKey;
    case ProviderKind::amazonBedrock:
        return Form::AccessKeys;
    case ProviderKind::zun:
    case ProviderKind::nuvel:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
    case ProviderKind::openAI:
    case ProviderKind::anthropic:
    case ProviderKind::openAICompatible:
        return Form::APIKey;
    }
    Q_UNREACHABLE();
}

QString explanationOf(ProviderKind kind, std::optional<bool> isLoggedIn) {
    if (kind == ProviderKind::claudeCode) {
        return isLoggedIn == false
                   ? CredentialsEditor::tr("Claude Code on this Mac is not logged in.")
                   : CredentialsEditor::tr("Uses the Claude Code login on this Mac. No API key.");
    }
    if (kind == ProviderKind::codex)
        return CredentialsEditor::tr("No API key. This model uses the CLI login on this Mac.");
    if (kind == ProviderKind::nuvel) {
        return CredentialsEditor::tr("Leave the base URL empty to use local nuvel-rs, the same checkpoint as "
                                     "Ombrel. The URL of the hosted API needs an API key.");
    }
    return {};
}

QString apiKeyPlaceholderOf(ProviderKind kind, bool isSaved) {
    if (isSaved)
        return CredentialsEditor::tr("API key saved — paste to replace");
    return kind == ProviderKind::nuvel || kind == ProviderKind::veritor
               ? CredentialsEditor::tr("API key, optional")
               : CredentialsEditor::tr("API key");
}

} // namespace

void CredentialsEditor::show(const ModelProfile* profile) {
    const auto nextID = profile ? std::optional(profile->id) : std::nullopt;
    if (std::exchange(id, nextID) != nextID)
        clearPasted();
    Shown next = profile ? shownOf(*profile) : Shown{};
    if (next == shown)
        return;
    shown = std::move(next);
    Q_EMIT changed();
}

CredentialsEditor::Shown CredentialsEditor::shownOf(const ModelProfile& profile) {
    const bool isSaved = model.hasUsableSecret(profile);
    return {.form = formOf(profile.provider),
            .isSaved = isSaved,
            .explanation = explanationOf(profile.provider, *model.claudeLoggedIn),
            .loginStatus = toQString(model.claudeLoginStatus->value_or("")),
            .apiKeyPlaceholder = apiKeyPlaceholderOf(profile.provider, isSaved)};
}

QString CredentialsEditor::accessKeyPlaceholder() const {
    return isSaved() ? tr("Access key saved — paste to replace") : tr("Access key");
}

QString CredentialsEditor::secretKeyPlaceholder() const {
    return isSaved() ? tr("Secret key saved — paste to replace") : tr("Secret key");
}

void CredentialsEditor::save() {
    if (!id)
        return;
    model.mergeSecret(*id, {.apiKey = pasted.apiKey.toStdString(),
                            .awsAccessKey = pasted.accessKey.toStdString(),
                            .awsSecretKey = pasted.secretKey.toStdString(),
                            .awsSessionToken = pasted.sessionToken.toStdString()});
    clearPasted();
    refresh();
}

void CredentialsEditor::remove() {
    if (!id)
        return;
    model.clearSecret(*id);
    clearPasted();
    refresh();
}

void CredentialsEditor::clearPasted() {
    setPasted({});
}

void CredentialsEditor::refresh() {
    show(model.library.findModel(*id));
}

void CredentialsEditor::setPasted(Pasted next) {
    if (next == pasted)
        return;
    pasted = std::move(next);
    Q_EMIT pastedChanged();
}

void CredentialsEditor::paste(QString Pasted::*field, const QString& text) {
    Pasted next = pasted;
    next.*field = text;
    setPasted(std::move(next));
}

} // namespace quorl
