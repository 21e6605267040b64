#pragma once

#include "screens/CredentialsEditor.h"
#include "screens/ModelAdapter.h"
#include "screens/ModelEditor.h"
#include "screens/ModelListModel.h"

#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

namespace quorl {

// The Models screen: the catalogue, and beside it the selected model to be edited. Thread: main. Failures: in
// the alert of the model.
class ModelsScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(quorl::ModelListModel* models READ models CONSTANT)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged) // -1 for none
    Q_PROPERTY(quorl::ModelEditor* editor READ editor CONSTANT)
    Q_PROPERTY(quorl::CredentialsEditor* credentials READ credentials CONSTANT)
    // All kinds as a picker takes them; the value of each is its place.
    Q_PROPERTY(QVariantList kinds READ kinds CONSTANT)

public:
    /// Both are borrowed and must outlive the screen.
    ModelsScreen(AppModel& appModel, ModelAdapter& adapter);

    [[nodiscard]] ModelListModel* models() { return &rows; }
    [[nodiscard]] int selectedRow() const { return rows.rowOf(*model.selectedModelID); }
    [[nodiscard]] ModelEditor* editor() { return &profileEditor; }
    [[nodiscard]] CredentialsEditor* credentials() { return &credentialsEditor; }
    [[nodiscard]] static QVariantList kinds();

    Q_INVOKABLE void add(int kind);
    Q_INVOKABLE void select(int row);

Q_SIGNALS:
    void selectionChanged();

private:
    void refresh(const ModelChanges& changes);
    void refreshRows();
    void refreshSelection();

    AppModel& model;
    ModelListModel rows;
    ModelEditor profileEditor;
    CredentialsEditor credentialsEditor;
};

} // namespace quorl
