#include "transports/URLOpener.h"

#include "transports/ChildProcess.h"
#include "transports/HomeDirectory.h"

namespace quorl {

void openURL(const std::string& url) {
    const Descriptor nowhere = openNowhere();
    // A child that is let go is reaped all the same; a desktop without xdg-open has no browser to show.
    static_cast<void>(
        ChildProcess::start({.executable = "xdg-open",
                             .arguments = {url},
                             .environment = std::nullopt,
                             .workingDirectory = homeDirectory(),
                             .lookup = ChildProcess::Lookup::searchPATH},
                            {.input = nowhere.get(), .output = nowhere.get(), .error = nowhere.get()}));
}

} // namespace quorl
