#include "platform/linux/QtMainThread.h"

#include <QObject>
#include <QThread>
#include <QTimer>

namespace quorl {

QtMainThread::QtMainThread() : receiver(std::make_unique<QObject>()) {}

QtMainThread::~QtMainThread() = default;

void QtMainThread::post(std::function<void()> work) {
    // Queued even from the main thread itself: a direct call would run the work inside its poster.
    QMetaObject::invokeMethod(receiver.get(), std::move(work), Qt::QueuedConnection);
}

void QtMainThread::postAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    Q_ASSERT(receiver->thread() == QThread::currentThread());
    QTimer::singleShot(delay, receiver.get(), std::move(work));
}

} // namespace quorl
