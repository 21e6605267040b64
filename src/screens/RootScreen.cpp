#include "screens/RootScreen.h"

namespace quorl {

RootScreen::RootScreen(AppModel& appModel)
    : model(appModel), adapter(model), draftScreen(model, adapter), alertModel(model, adapter) {}

} // namespace quorl
