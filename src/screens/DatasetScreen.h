#pragma once

#include "screens/DatasetListModel.h"
#include "screens/ScreenTable.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// The saved examples, to be looked through and exported. Thread: main. Failures: in the alert of the model.
class DatasetScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY countChanged)
    Q_PROPERTY(QString count READ count NOTIFY countChanged) // "25 examples"
    Q_PROPERTY(bool showsExamples READ showsExamples NOTIFY showsExamplesChanged)
    Q_PROPERTY(quorl::DatasetListModel* examples READ examples CONSTANT) // empty until first shown

public:
    /// What it is made of is borrowed and must outlive the screen.
    explicit DatasetScreen(const ScreenParts& parts);

    [[nodiscard]] bool isEmpty() const { return shownCount == 0; }
    [[nodiscard]] QString count() const;
    [[nodiscard]] bool showsExamples() const { return isShowing; }
    [[nodiscard]] DatasetListModel* examples() { return &list; }

    Q_INVOKABLE void toggleExamples();
    Q_INVOKABLE void search(const QString& text) { list.search(text); }
    Q_INVOKABLE void requestDelete(const QString& exampleID);
    /// All examples, whatever is searched. Nothing happens before there is a window.
    Q_INVOKABLE void exportAll();

Q_SIGNALS:
    void countChanged();
    void showsExamplesChanged();

private:
    void refresh(const ModelChanges& changes);

    AppModel& model;
    ScreenServices& services;
    DatasetListModel list;
    std::size_t shownCount;
    bool isShowing = false;
};

} // namespace quorl
