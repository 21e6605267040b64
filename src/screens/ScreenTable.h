#pragma once

#include "app/AppModel.h"

#include <QObject>
#include <QString>

#include <memory>

namespace quorl {

class Announcer;
class ModelAdapter;

// The desktop's services that screens use beside the model. Borrowed: whoever composes the program keeps them
// alive.
struct ScreenServices {
    Clock& clock;
    UserDefaults& defaults;
    Clipboard& clipboard;
    MotionSetting& motion;
    WindowState& windowState;
    FileSaver* fileSaver = nullptr; // belongs to the window, and is there once the window is
};

// What a screen is made of.
struct ScreenParts {
    AppModel& model;
    ModelAdapter& adapter;
    ScreenServices& services;
    Announcer& announcer;
};

// A screen as long as it is visited.
struct VisitedScreen {
    QString file; // below qml/
    std::unique_ptr<QObject> model;
};

/// Every screen but Compare, which is always there. What it is made of is borrowed and must outlive it.
[[nodiscard]] VisitedScreen visit(const Destination& destination, const ScreenParts& parts);

} // namespace quorl
