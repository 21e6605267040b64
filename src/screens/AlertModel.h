#pragma once

#include "screens/ModelAdapter.h"

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// The alert over everything: a deletion that waits for its confirmation, or the one general message. Of both
// the deletion comes first, and the message follows. Thread: main. Failures: none.
class AlertModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(Kind kind READ kind NOTIFY changed)
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed) // empty for a deletion

public:
    /// Both are borrowed and must outlive the alert.
    AlertModel(AppModel& appModel, ModelAdapter& adapter);

    enum class Kind { None, Deletion, General };
    Q_ENUM(Kind)

    [[nodiscard]] Kind kind() const { return shown.kind; }
    [[nodiscard]] bool isShown() const { return shown.kind != Kind::None; }
    [[nodiscard]] QString title() const { return shown.title; }
    [[nodiscard]] QString message() const { return shown.message; }

    Q_INVOKABLE void confirmDelete() { model.confirmDelete(); }
    Q_INVOKABLE void cancelDelete() { model.pendingDelete = std::nullopt; }
    Q_INVOKABLE void dismiss() { model.alertMessage = std::nullopt; }

Q_SIGNALS:
    void changed();

private:
    struct Alert {
        Kind kind = Kind::None;
        QString title;
        QString message;

        bool operator==(const Alert&) const = default;
    };

    [[nodiscard]] Alert current() const;
    void refresh();

    AppModel& model;
    Alert shown;
};

} // namespace quorl
