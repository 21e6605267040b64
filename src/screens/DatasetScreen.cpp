#include "screens/DatasetScreen.h"

#include "screens/ModelAdapter.h"

namespace quorl {

DatasetScreen::DatasetScreen(const ScreenParts& parts)
    : model(parts.model), services(parts.services), list(parts.model.library),
      shownCount(parts.model.library.dataset().size()) {
    connect(&parts.adapter, &ModelAdapter::changed, this, &DatasetScreen::refresh);
}

QString DatasetScreen::count() const {
    return shownCount == 1 ? tr("1 example") : tr("%1 examples").arg(shownCount);
}

void DatasetScreen::toggleExamples() {
    if (!list.isLoaded())
        list.load();
    isShowing = !isShowing;
    Q_EMIT showsExamplesChanged();
}

void DatasetScreen::exportAll() {
    if (services.fileSaver)
        model.exportDataset(*services.fileSaver);
}

void DatasetScreen::requestDelete(const QString& exampleID) {
    if (const auto id = UUID::parse(exampleID.toStdString()))
        model.requestDelete({PendingDelete::Kind::example, *id});
}

void DatasetScreen::refresh(const ModelChanges& changes) {
    list.refresh(changes);
    const std::size_t next = model.library.dataset().size();
    if (next == shownCount)
        return;
    shownCount = next;
    Q_EMIT countChanged();
}

} // namespace quorl
