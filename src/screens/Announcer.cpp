#include "screens/Announcer.h"

#include <QAccessible>

namespace quorl {

void Announcer::announce(const QString& next) {
    latest = next;
    Q_EMIT announced();
}

void Announcer::read(QObject* notification) {
    // Qt's own event for an alert is not passed on to the bus; that of an object that shows is.
    QAccessibleEvent event(notification, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

} // namespace quorl
