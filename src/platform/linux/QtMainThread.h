#pragma once

#include "platform/Platform.h"

#include <memory>

class QObject;

namespace quorl {

// The event loop of the thread that makes this object, which is the one with the application object. What has
// been posted and not run when the object goes is dropped.
class QtMainThread : public MainThread {
public:
    QtMainThread();
    ~QtMainThread() override;

    void post(std::function<void()> work) override;
    void postAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

private:
    std::unique_ptr<QObject> receiver; // its thread is the one on which work runs
};

} // namespace quorl
