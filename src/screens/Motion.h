#pragma once

#include "platform/Platform.h"

#include <QObject>
#include <QStringList>
#include <qqmlregistration.h>

#include <array>
#include <optional>
#include <string_view>

class QJSEngine;
class QQmlEngine;

namespace quorl {

// How much the user wants to see move.
enum class MotionPreference { system, reduced, full };

inline constexpr std::array allMotionPreferences{MotionPreference::system, MotionPreference::reduced,
                                                 MotionPreference::full};

/// As it is kept in the user's defaults.
[[nodiscard]] std::string_view rawValue(MotionPreference preference);
[[nodiscard]] std::optional<MotionPreference> motionPreference(std::string_view rawValue);

// Whether anything may move, for every animated part, and the preference that decides it. In QML it is a
// singleton, the one that its engine was given. Thread: main. Failures: none.
class Motion : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isAllowed READ isAllowed NOTIFY changed)
    Q_PROPERTY(QStringList titles READ titles CONSTANT)       // of the preferences, in order
    Q_PROPERTY(int preference READ preference NOTIFY changed) // its place among them; -1 for one that is none

public:
    /// `userDefaults` is borrowed and must outlive the object.
    explicit Motion(UserDefaults& userDefaults);

    /// For a QML engine that was given none: the desktop's setting decides.
    static Motion* create(QQmlEngine* engine, QJSEngine*);
    /// Borrowed by the engine.
    void provideTo(QQmlEngine& engine);

    [[nodiscard]] bool isAllowed() const;
    [[nodiscard]] static QStringList titles();
    [[nodiscard]] int preference() const;

    Q_INVOKABLE void choose(int place);

    /// Whether the desktop asks for less motion.
    void setReducedBySystem(bool isReduced);

Q_SIGNALS:
    void changed();

private:
    Motion() = default;

    UserDefaults* defaults = nullptr; // null in an engine that was given none
    std::optional<MotionPreference> stored = MotionPreference::system;
    bool isReducedBySystem = false;
};

} // namespace quorl
