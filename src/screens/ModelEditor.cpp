#include "screens/ModelEditor.h"

#include "screens/Strings.h"

#include <limits>

namespace quorl {

namespace {

constexpr auto asking = "Asking…";

bool isLocalTool(ProviderKind kind) {
    switch (kind) {
    case ProviderKind::claudeCode:
    case ProviderKind::codex:
        return true;
    case ProviderKind::zun:
    case ProviderKind::nuvel:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
    case ProviderKind::openAI:
    case ProviderKind::anthropic:
    case ProviderKind::amazonBedrock:
    case ProviderKind::openAICompatible:
        return false;
    }
    Q_UNREACHABLE();
}

} // namespace

void ModelEditor::show(const ModelProfile* profile) {
    if (profile ? shown == *profile : !shown)
        return;
    shown = profile ? std::optional(*profile) : std::nullopt;
    Q_EMIT changed();
    showTestStatus();
}

void ModelEditor::showTestStatus() {
    const std::string* status = shown ? model.testStatus.find(shown->id) : nullptr;
    QString next = status ? toQString(*status) : QString();
    if (next == shownTestStatus)
        return;
    shownTestStatus = std::move(next);
    Q_EMIT testStatusChanged();
}

QString ModelEditor::subtitle() const {
    if (!shown)
        return {};
    return tr("%1 through %2. The decisions API sends one question and records the text, time, tokens, and "
              "cost.")
        .arg(toQString(title(shown->provider)), toQString(transportTitle(shown->provider)).toLower());
}

QString ModelEditor::name() const {
    return toQString(current().name);
}

QString ModelEditor::modelIdentifier() const {
    return toQString(current().modelIdentifier);
}

QString ModelEditor::identifierLabel() const {
    return isLocalTool(current().provider) ? tr("Model alias") : tr("Model id");
}

QString ModelEditor::identifierPlaceholder() const {
    return current().provider == ProviderKind::codex ? tr("CLI default") : tr("Model id");
}

QString ModelEditor::location() const {
    return toQString(current().*locationField());
}

QString ModelEditor::locationLabel() const {
    if (isLocalTool(current().provider))
        return tr("Executable path");
    return current().provider == ProviderKind::amazonBedrock ? tr("Region") : tr("Base URL");
}

QString ModelEditor::notes() const {
    return toQString(current().notes);
}

bool ModelEditor::isTesting() const {
    return shownTestStatus == QString::fromUtf8(asking);
}

void ModelEditor::setProvider(int place) {
    write(&ModelProfile::provider, allProviderKinds.at(static_cast<std::size_t>(place)));
}

// A field holds the largest numbers as the next power of two, which no integer has.
void ModelEditor::setMaxOutputTokens(double count) {
    using Limits = std::numeric_limits<std::int64_t>;
    write(&ModelProfile::maxOutputTokens, count >= 0x1p63 ? Limits::max() : static_cast<std::int64_t>(count));
}

// What the field makes of our own text by itself counts as no edit.
void ModelEditor::setNotes(const QString& text) {
    if (text != asEdited(notes()))
        write(&ModelProfile::notes, text.toStdString());
}

void ModelEditor::test() {
    const ModelProfile* profile = present();
    if (!profile)
        return;
    model.test(*profile);
    showTestStatus();
}

void ModelEditor::requestDelete() {
    if (shown)
        model.requestDelete({PendingDelete::Kind::model, shown->id});
}

const ModelProfile& ModelEditor::current() const {
    static const ModelProfile blank;
    return shown ? *shown : blank;
}

const ModelProfile* ModelEditor::present() const {
    return shown ? model.library.findModel(shown->id) : nullptr;
}

std::string ModelProfile::*ModelEditor::locationField() const {
    return isLocalTool(current().provider) ? &ModelProfile::executablePath : &ModelProfile::endpoint;
}

} // namespace quorl
