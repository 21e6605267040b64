#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// Says to a screen reader what happens away from the keyboard: an answer that arrives, a toast. The words go
// out as a notification that has just come into sight, which is what screen readers read unasked. Thread:
// main. Failures: none; without a screen reader nothing is said.
class Announcer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(QString words READ words NOTIFY announced) // the latest

public:
    using QObject::QObject;

    void announce(const QString& next);

    [[nodiscard]] QString words() const { return latest; }

    /// Lets `notification`, whose accessible name has become the words, be read.
    Q_INVOKABLE static void read(QObject* notification);

Q_SIGNALS:
    void announced();

private:
    QString latest;
};

} // namespace quorl
