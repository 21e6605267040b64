#pragma once

#include "app/AppModel.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <optional>

namespace quorl {

// The credentials of one model, or how it does without. It holds what is pasted until that is saved, and
// never what is saved. Thread: main. Failures: in the alert of the model.
class CredentialsEditor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ModelsScreen")
    Q_PROPERTY(Form form READ form NOTIFY changed)
    Q_PROPERTY(bool isSaved READ isSaved NOTIFY changed) // and suffices
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    Q_PROPERTY(QString loginStatus READ loginStatus NOTIFY changed) // empty for none
    Q_PROPERTY(QString apiKeyPlaceholder READ apiKeyPlaceholder NOTIFY changed)
    Q_PROPERTY(QString accessKeyPlaceholder READ accessKeyPlaceholder NOTIFY changed)
    Q_PROPERTY(QString secretKeyPlaceholder READ secretKeyPlaceholder NOTIFY changed)
    Q_PROPERTY(QString apiKey READ apiKey WRITE setAPIKey NOTIFY pastedChanged)
    Q_PROPERTY(QString accessKey READ accessKey WRITE setAccessKey NOTIFY pastedChanged)
    Q_PROPERTY(QString secretKey READ secretKey WRITE setSecretKey NOTIFY pastedChanged)
    Q_PROPERTY(QString sessionToken READ sessionToken WRITE setSessionToken NOTIFY pastedChanged)

public:
    /// Borrowed, and must outlive the editor.
    explicit CredentialsEditor(AppModel& appModel) : model(appModel) {}

    enum class Form { Login, NoKey, APIKey, AccessKeys };
    Q_ENUM(Form)

    /// Null for none.
    void show(const ModelProfile* profile);
    void clearPasted();

    [[nodiscard]] Form form() const { return shown.form; }
    [[nodiscard]] bool isSaved() const { return shown.isSaved; }
    [[nodiscard]] QString explanation() const { return shown.explanation; }
    [[nodiscard]] QString loginStatus() const { return shown.loginStatus; }
    [[nodiscard]] QString apiKeyPlaceholder() const { return shown.apiKeyPlaceholder; }
    [[nodiscard]] QString accessKeyPlaceholder() const;
    [[nodiscard]] QString secretKeyPlaceholder() const;

    // What is pasted.
    [[nodiscard]] QString apiKey() const { return pasted.apiKey; }
    [[nodiscard]] QString accessKey() const { return pasted.accessKey; }
    [[nodiscard]] QString secretKey() const { return pasted.secretKey; }
    [[nodiscard]] QString sessionToken() const { return pasted.sessionToken; }
    void setAPIKey(const QString& text) { paste(&Pasted::apiKey, text); }
    void setAccessKey(const QString& text) { paste(&Pasted::accessKey, text); }
    void setSecretKey(const QString& text) { paste(&Pasted::secretKey, text); }
    void setSessionToken(const QString& text) { paste(&Pasted::sessionToken, text); }

    Q_INVOKABLE void save();
    Q_INVOKABLE void remove();
    Q_INVOKABLE void logIn() { model.loginClaudeCode(); }

Q_SIGNALS:
    void changed();
    void pastedChanged();

private:
    struct Shown {
        Form form = Form::APIKey;
        bool isSaved = false;
        QString explanation;
        QString loginStatus;
        QString apiKeyPlaceholder;

        bool operator==(const Shown&) const = default;
    };

    struct Pasted {
        QString apiKey;
        QString accessKey;
        QString secretKey;
        QString sessionToken;

        bool operator==(const Pasted&) const = default;
    };

    [[nodiscard]] Shown shownOf(const ModelProfile& profile);
    void refresh();
    void setPasted(Pasted next);
    void paste(QString Pasted::*field, const QString& text);

    AppModel& model;
    std::optional<UUID> id;
    Shown shown;
    Pasted pasted;
};

} // namespace quorl
