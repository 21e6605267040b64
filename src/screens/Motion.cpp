#include "screens/Motion.h"

#include <QQmlEngine>
#include <QVariant>

#include <algorithm>

namespace quorl {

namespace {

constexpr std::string_view key = "quorl.motion.preference";
constexpr auto engineProperty = "quorlMotion";

} // namespace

std::string_view rawValue(MotionPreference preference) {
    switch (preference) {
    case MotionPreference::system:
        return "system";
    case MotionPreference::reduced:
        return "reduced";
    case MotionPreference::full:
        return "full";
    }
    Q_UNREACHABLE();
}

std::optional<MotionPreference> motionPreference(std::string_view raw) {
    const auto* const found = std::find_if(allMotionPreferences.begin(), allMotionPreferences.end(),
                                           [&](MotionPreference each) { return rawValue(each) == raw; });
    return found == allMotionPreferences.end() ? std::nullopt : std::optional(*found);
}

Motion::Motion(UserDefaults& userDefaults) : defaults(&userDefaults) {
    if (const auto raw = defaults->string(key))
        stored = motionPreference(*raw);
}

Motion* Motion::create(QQmlEngine* engine, QJSEngine*) {
    if (auto* const given = engine->property(engineProperty).value<Motion*>())
        return given;
    return new Motion; // the engine owns it
}

void Motion::provideTo(QQmlEngine& engine) {
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    engine.setProperty(engineProperty, QVariant::fromValue(this));
}

bool Motion::isAllowed() const {
    switch (stored.value_or(MotionPreference::system)) {
    case MotionPreference::system:
        return !isReducedBySystem;
    case MotionPreference::reduced:
        return false;
    case MotionPreference::full:
        return true;
    }
    Q_UNREACHABLE();
}

QStringList Motion::titles() {
    return {tr("System setting"), tr("Reduced motion"), tr("Full motion")};
}

int Motion::preference() const {
    return stored ? static_cast<int>(*stored) : -1;
}

void Motion::choose(int place) {
    const MotionPreference next = allMotionPreferences.at(static_cast<std::size_t>(place));
    if (next == stored)
        return;
    stored = next;
    if (defaults)
        defaults->setString(key, std::string(rawValue(next)));
    Q_EMIT changed();
}

void Motion::setReducedBySystem(bool isReduced) {
    if (isReduced == isReducedBySystem)
        return;
    isReducedBySystem = isReduced;
    Q_EMIT changed();
}

} // namespace quorl
