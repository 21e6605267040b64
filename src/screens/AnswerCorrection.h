#pragma once

#include "app/AppModel.h"
#include "decision/VeritorResults.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <qqmlregistration.h>

#include <optional>
#include <string>
#include <vector>

namespace quorl {

// What should have been answered, asked of the person who refuses an answer: the right choices, or the whole
// text by hand. It goes to the dataset in place of the answer. Thread: main. Failures: in the model's alert,
// and then nothing of what was entered is lost.
class AnswerCorrection : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by AnswerCardListModel")
    Q_PROPERTY(Form form READ form NOTIFY changed)
    // By choice: `{prompt, options: [{text, value}]}`, and what was chosen for each, empty for nothing yet.
    Q_PROPERTY(QVariantList questions READ questions NOTIFY changed)
    Q_PROPERTY(QStringList choices READ choices NOTIFY entered)
    Q_PROPERTY(QString text READ text NOTIFY entered) // by hand
    Q_PROPERTY(bool canSave READ canSave NOTIFY entered)

public:
    /// Borrowed; must outlive the correction.
    explicit AnswerCorrection(AppModel& appModel) : model(appModel) {}

    enum class Form { None, ByChoice, ByHand };
    Q_ENUM(Form)

    [[nodiscard]] Form form() const { return shownForm; }
    [[nodiscard]] QVariantList questions() const;
    [[nodiscard]] QStringList choices() const;
    [[nodiscard]] QString text() const { return typed; }
    [[nodiscard]] bool canSave() const;

    /// By choice if any of the results has two options or more, else by hand.
    void open(const ModelAnswer& answer, const std::vector<DecisionResult>& results);

    Q_INVOKABLE void choose(int place, const QString& label);
    Q_INVOKABLE void edit(const QString& next);
    Q_INVOKABLE void save();
    Q_INVOKABLE void cancel();

    /// Closes it if that answer is not there to be corrected any more.
    void follow();

Q_SIGNALS:
    void changed();
    void entered();

private:
    struct Question {
        DecisionResult result;
        std::optional<std::string> chosen; // a label
    };

    // The text that goes to the dataset; nothing where it cannot be made.
    [[nodiscard]] std::optional<std::string> corrected(const ModelAnswer& answer) const;
    [[nodiscard]] bool isKept(const std::string& completion) const;
    void show(Form next);

    AppModel& model;
    Form shownForm = Form::None;
    UUID answerID;
    std::vector<Question> asked;
    QString typed;
};

} // namespace quorl
