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
    // Each is kept while its alert goes.
    Q_PROPERTY(QString deletionTitle READ deletionTitle NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    /// Both are borrowed and must outlive the alert.
    AlertModel(AppModel& appModel, ModelAdapter& adapter);

    enum class Kind { None, Deletion, General };
    Q_ENUM(Kind)

    [[nodiscard]] Kind kind() const { return shown.kind; }
    [[nodiscard]] bool isShown() const { return shown.kind != Kind::None; }
    [[nodiscard]] QString deletionTitle() const { return shown.deletionTitle; }
    [[nodiscard]] QString message() const { return shown.message; }

    // At once, so that what is set next in the same turn shows as a new alert.
    Q_INVOKABLE void confirmDelete();
    Q_INVOKABLE void cancelDelete();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();

private:
    struct Alert {
        Kind kind = Kind::None;
        QString deletionTitle;
        QString message;

        bool operator==(const Alert&) const = default;
    };

    void refresh();

    AppModel& model;
    Alert shown;
};

} // namespace quorl
