#pragma once

#include "screens/ModelAdapter.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// The one general alert.
class AlertModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    /// Both are borrowed and must outlive the alert.
    AlertModel(AppModel& appModel, ModelAdapter& adapter);

    [[nodiscard]] bool isShown() const { return shown.has_value(); }
    [[nodiscard]] QString message() const { return shown.value_or(QString()); }

    Q_INVOKABLE void dismiss() { model.alertMessage = std::nullopt; }

Q_SIGNALS:
    void changed();

private:
    void refresh();

    AppModel& model;
    std::optional<QString> shown;
};

} // namespace quorl
