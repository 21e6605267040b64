#pragma once

#include "decision/Veritor.h"
#include "screens/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace quorl::test {

// The composer as a person uses it, by mouse and by keys.
class ComposerWindow : public WindowTest {
protected:
    void openWith(const DecisionQuestion& question) {
        harness.defaults.setString("draft.questions", Veritor::archive({question}));
        openDecision();
    }

    void openBulk(const std::vector<std::string>& texts, QSize size = {1240, 800}) {
        std::vector<BulkQuestion> questions;
        for (const std::string& text : texts)
            questions.push_back({UUID::random(), text});
        harness.defaults.setString("draft.kind", "decision");
        harness.defaults.setBoolean("draft.bulk", true);
        harness.defaults.setBytes("draft.bulkQuestions", Veritor::archiveBulk(questions));
        open(size);
    }

    QQuickItem* findField(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::EditableText);
    }
    QQuickItem* findMenuButton(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::ButtonMenu);
    }
    QQuickItem* findEntry(const char* name) { return find(QString::fromUtf8(name), QAccessible::MenuItem); }
    QQuickItem* findSegment(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::RadioButton);
    }
    QQuickItem* findToggle(const char* name) { return find(QString::fromUtf8(name), QAccessible::CheckBox); }
    QQuickItem* findProblem(const char* text) {
        return find(QString::fromUtf8(text), QAccessible::AlertMessage);
    }

    // Until all that has been opened is there, and all that has been closed is gone.
    void pause() {
        EXPECT_TRUE(waitFor([this] {
            return std::ranges::none_of(window().findChildren<QObject*>(), [](const QObject* item) {
                return item->inherits("QQuickPopup") && item->property("visible") != item->property("opened");
            });
        }));
        settle();
    }
    void clickAndPause(QQuickItem* item) {
        click(item);
        pause();
    }
    void escape() {
        press(Qt::Key_Escape);
        pause();
    }
    void paste(const QString& text) {
        QGuiApplication::clipboard()->setText(text);
        press(Qt::Key_V, Qt::ControlModifier);
    }

    std::vector<std::string> bulkTexts() {
        std::vector<std::string> texts;
        for (const BulkQuestion& question : *harness.model().draftBulkQuestions)
            texts.push_back(question.text);
        return texts;
    }

    std::vector<std::string> labels() {
        std::vector<std::string> result;
        for (const DecisionOption& option : draftQuestion().options)
            result.push_back(option.label);
        return result;
    }

    static DecisionQuestion choiceOf(const std::vector<std::string>& labels) {
        DecisionQuestion question = DecisionQuestion::starter();
        question.instructions = "Which room?";
        question.options.clear();
        for (const std::string& label : labels)
            question.options.push_back({UUID::random(), label, ""});
        return question;
    }
};

using Texts = std::vector<std::string>;

} // namespace quorl::test
