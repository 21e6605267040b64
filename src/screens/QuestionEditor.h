#pragma once

#include "app/AppModel.h"
#include "screens/OptionListModel.h"
#include "screens/ScoreLevelListModel.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// One typed question of the draft and every edit of it. The question is looked up by its id for each edit,
// and so are its options and levels: what has gone meanwhile takes no edit, and its neighbour stays as it is.
// What was shown last goes on being shown. Thread: main. Failures: none.
class QuestionEditor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by QuestionListModel and DraftScreen")
    Q_PROPERTY(QString instructions READ instructions NOTIFY instructionsChanged)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(Type type READ type NOTIFY typeChanged)
    Q_PROPERTY(quorl::OptionListModel* options READ options CONSTANT)
    Q_PROPERTY(bool canRemoveOption READ canRemoveOption NOTIFY countsChanged)
    Q_PROPERTY(quorl::ScoreLevelListModel* levels READ levels CONSTANT)
    Q_PROPERTY(bool canAddLevel READ canAddLevel NOTIFY countsChanged)
    Q_PROPERTY(bool canRemoveLevel READ canRemoveLevel NOTIFY countsChanged)
    Q_PROPERTY(QString yesMeans READ yesMeans NOTIFY meaningsChanged)
    Q_PROPERTY(QString noMeans READ noMeans NOTIFY meaningsChanged)

public:
    // Where in the draft the question stands.
    enum class Place { questions, bulkTemplate };

    /// `appModel` is borrowed and must outlive the editor.
    QuestionEditor(AppModel& appModel, Place whereItStands, const DecisionQuestion& question);

    enum class Type { Choice, Score, YesNo };
    Q_ENUM(Type)

    [[nodiscard]] QString instructions() const;
    [[nodiscard]] QString name() const;
    [[nodiscard]] Type type() const;
    [[nodiscard]] OptionListModel* options() { return &optionRows; }
    [[nodiscard]] bool canRemoveOption() const { return shown.options.size() > fewest; }
    [[nodiscard]] ScoreLevelListModel* levels() { return &levelRows; }
    [[nodiscard]] bool canAddLevel() const;
    [[nodiscard]] bool canRemoveLevel() const { return shown.levels.size() > fewest; }
    [[nodiscard]] QString yesMeans() const;
    [[nodiscard]] QString noMeans() const;

    /// Takes what the draft holds now. Of another question, every level is another one.
    void show(const DecisionQuestion& question);

    Q_INVOKABLE void setType(quorl::QuestionEditor::Type next);

    /// What an editor holds now. What it makes of our own text by itself counts as no edit.
    Q_INVOKABLE void editInstructions(const QString& text);
    Q_INVOKABLE void editName(const QString& text);
    Q_INVOKABLE void editYesMeans(const QString& text);
    Q_INVOKABLE void editNoMeans(const QString& text);

    Q_INVOKABLE void addOption();
    Q_INVOKABLE void removeOption(const QString& optionID);
    Q_INVOKABLE void editOption(const QString& optionID, const QString& text);
    Q_INVOKABLE void editOptionDetail(const QString& optionID, const QString& text);

    Q_INVOKABLE void addLevel();
    Q_INVOKABLE void removeLevel(const QString& levelID);
    Q_INVOKABLE void editLevel(const QString& levelID, const QString& text);
    /// The levels become the numbers from 1 to `highest`.
    Q_INVOKABLE void useNumbers(int highest);

Q_SIGNALS:
    void instructionsChanged();
    void nameChanged();
    void typeChanged();
    void countsChanged();
    void meaningsChanged();

private:
    static constexpr std::size_t fewest = 2; // options of a choice, levels of a score

    // The question as the draft holds it; null if it has gone.
    [[nodiscard]] const DecisionQuestion* find() const;

    // Lets `apply` change the question, if it is still there, and shows it changed.
    template <class Edit>
    void change(Edit apply);
    // The same with the levels by their identity.
    template <class Edit>
    void changeLevels(Edit apply);

    AppModel& model;
    const Place place;
    DecisionQuestion shown;
    OptionListModel optionRows;
    ScoreLevelListModel levelRows;
};

} // namespace quorl
