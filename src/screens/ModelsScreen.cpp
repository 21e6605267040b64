#include "screens/ModelsScreen.h"

#include "screens/Strings.h"

#include <QVariantMap>

#include <vector>

namespace quorl {

ModelsScreen::ModelsScreen(AppModel& appModel, ModelAdapter& adapter)
    : model(appModel), profileEditor(appModel), credentialsEditor(appModel) {
    connect(&adapter, &ModelAdapter::changed, this, &ModelsScreen::refresh);
    refreshRows();
    refreshSelection();
}

QVariantList ModelsScreen::kinds() {
    QVariantList list;
    for (const ProviderKind kind : allProviderKinds) {
        list.append(QVariantMap{{QStringLiteral("text"), toQString(title(kind))},
                                {QStringLiteral("value"), static_cast<int>(kind)}});
    }
    return list;
}

void ModelsScreen::add(int kind) {
    model.addModel(allProviderKinds.at(static_cast<std::size_t>(kind)));
    refreshRows();
    refreshSelection();
}

void ModelsScreen::select(int row) {
    model.selectedModelID = rows.idAt(row);
    refreshSelection();
}

void ModelsScreen::refresh(const ModelChanges& changes) {
    using enum AppField;
    if (changes.hasAny({models, secretFlags, claudeLoggedIn}))
        refreshRows();
    if (changes.hasAny({models, secretFlags, claudeLoggedIn, claudeLoginStatus, selectedModelID}))
        refreshSelection();
    if (changes.has(testStatus))
        profileEditor.showTestStatus();
}

void ModelsScreen::refreshRows() {
    std::vector<ModelRow> next;
    next.reserve(model.library.models().size());
    for (const ModelProfile& profile : model.library.models())
        next.push_back({profile.id, profile.name, profile.provider, model.readiness(profile)});
    rows.setRows(next);
}

void ModelsScreen::refreshSelection() {
    const auto& id = *model.selectedModelID;
    const ModelProfile* selected = id ? model.library.findModel(*id) : nullptr;
    profileEditor.show(selected);
    credentialsEditor.show(selected);
    // Even if the row is the same one: a list view moves its own mark when rows come and go.
    Q_EMIT selectionChanged();
}

} // namespace quorl
