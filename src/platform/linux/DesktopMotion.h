#pragma once

#include "platform/Platform.h"

#include <chrono>
#include <memory>

namespace quorl {

// What the session says about motion: the desktop portal's "reduced-motion", else the switches for animations
// of GNOME and of KDE, of which one that is off will do. Asked and listened to on a thread of its own from
// the moment of making, so that the start of the window waits for nothing. No bus is started, and a bus that
// does not answer within `patience` counts as none. KDE's switch is heard to change by way of the portal
// alone. Failures: unseen; motion is then not reduced.
class DesktopMotion : public MotionSetting {
public:
    static constexpr std::chrono::milliseconds defaultPatience = std::chrono::seconds(5);

    /// `mainThread` is borrowed and must outlive the object; `config` is the user's folder for settings.
    DesktopMotion(MainThread& mainThread, const std::filesystem::path& config,
                  std::chrono::milliseconds patience = defaultPatience);
    ~DesktopMotion() override; // waits for a question under way, which ends at once or after its patience

    [[nodiscard]] bool isReduced() const override;
    void onChange(Changed changed) override;

private:
    struct Answer {
        bool isReduced = false;
        Changed changed;
    };
    class Listener;

    const std::shared_ptr<Answer> answer; // watched by what has been posted
    const std::unique_ptr<Listener> listener;
};

} // namespace quorl
