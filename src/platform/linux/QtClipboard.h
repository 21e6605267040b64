#pragma once

#include "platform/Platform.h"

namespace quorl {

// The clipboard of the session; needs a QGuiApplication. What was copied is there as long as the program
// runs, and longer where the desktop keeps it.
class QtClipboard : public Clipboard {
public:
    void replace(const std::string& text) override;
};

} // namespace quorl
