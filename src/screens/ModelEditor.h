#pragma once

#include "app/AppModel.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

#include <optional>
#include <string>
#include <utility>

namespace quorl {

// One model of the catalogue, to be edited: every change is saved at once, alone, and under the id of the
// model that is shown. Of a model that has gone in the meantime nothing is written. Thread: main. Failures:
// in the alert of the model.
class ModelEditor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ModelsScreen")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY changed)
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY changed)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(int provider READ provider WRITE setProvider NOTIFY changed) // its place among all kinds
    Q_PROPERTY(QString modelIdentifier READ modelIdentifier WRITE setModelIdentifier NOTIFY changed)
    Q_PROPERTY(QString identifierLabel READ identifierLabel NOTIFY changed)
    Q_PROPERTY(QString identifierPlaceholder READ identifierPlaceholder NOTIFY changed)
    // Where the model is: the path of a tool, a region, or a base URL.
    Q_PROPERTY(QString location READ location WRITE setLocation NOTIFY changed)
    Q_PROPERTY(QString locationLabel READ locationLabel NOTIFY changed)
    Q_PROPERTY(double inputPrice READ inputPrice WRITE setInputPrice NOTIFY changed)
    Q_PROPERTY(double outputPrice READ outputPrice WRITE setOutputPrice NOTIFY changed)
    Q_PROPERTY(double maxOutputTokens READ maxOutputTokens WRITE setMaxOutputTokens NOTIFY changed)
    Q_PROPERTY(QString notes READ notes WRITE setNotes NOTIFY changed)
    Q_PROPERTY(QString testStatus READ testStatus NOTIFY testStatusChanged) // empty before the first test
    Q_PROPERTY(bool isTesting READ isTesting NOTIFY testStatusChanged)

public:
    /// Borrowed, and must outlive the editor.
    explicit ModelEditor(AppModel& appModel) : model(appModel) {}

    /// Null for none.
    void show(const ModelProfile* profile);
    void showTestStatus();

    [[nodiscard]] bool isShown() const { return shown.has_value(); }
    [[nodiscard]] const std::optional<ModelProfile>& profile() const { return shown; }

    // Empty while no model is shown.
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] bool isEnabled() const { return current().enabled; }
    [[nodiscard]] QString name() const;
    [[nodiscard]] int provider() const { return static_cast<int>(current().provider); }
    [[nodiscard]] QString modelIdentifier() const;
    [[nodiscard]] QString identifierLabel() const;
    [[nodiscard]] QString identifierPlaceholder() const;
    [[nodiscard]] QString location() const;
    [[nodiscard]] QString locationLabel() const;
    [[nodiscard]] double inputPrice() const { return current().inputPricePerMillion; }
    [[nodiscard]] double outputPrice() const { return current().outputPricePerMillion; }
    [[nodiscard]] double maxOutputTokens() const { return static_cast<double>(current().maxOutputTokens); }
    [[nodiscard]] QString notes() const;
    [[nodiscard]] QString testStatus() const { return shownTestStatus; }
    [[nodiscard]] bool isTesting() const;

    void setEnabled(bool enabled) { write(&ModelProfile::enabled, enabled); }
    void setName(const QString& text) { write(&ModelProfile::name, text.toStdString()); }
    void setProvider(int place);
    void setModelIdentifier(const QString& text) {
        write(&ModelProfile::modelIdentifier, text.toStdString());
    }
    void setLocation(const QString& text) { write(locationField(), text.toStdString()); }
    void setInputPrice(double dollars) { write(&ModelProfile::inputPricePerMillion, dollars); }
    void setOutputPrice(double dollars) { write(&ModelProfile::outputPricePerMillion, dollars); }
    void setMaxOutputTokens(double count);
    void setNotes(const QString& text);

    Q_INVOKABLE void test();
    Q_INVOKABLE void requestDelete();

Q_SIGNALS:
    void changed();
    void testStatusChanged();

private:
    [[nodiscard]] const ModelProfile& current() const;
    [[nodiscard]] std::string ModelProfile::*locationField() const;

    // The model as it stands in the library; null when it has gone.
    [[nodiscard]] const ModelProfile* present() const;

    template <class Value>
    void write(Value ModelProfile::*field, Value value) {
        const ModelProfile* before = present();
        if (!before)
            return;
        ModelProfile next = *before;
        next.*field = std::move(value);
        model.replaceModel(next);
        show(&next);
    }

    AppModel& model;
    std::optional<ModelProfile> shown;
    QString shownTestStatus;
};

} // namespace quorl
