#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace quorl {

// A screen that has no more than its title yet.
class BlankScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by RootScreen")
    Q_PROPERTY(QString title MEMBER title CONSTANT)

public:
    explicit BlankScreen(QString name) : title(std::move(name)) {}

private:
    const QString title;
};

} // namespace quorl
