#include "api/LocalAPIServer.h"
#include "app/AppModel.h"
#include "app/Workers.h"
#include "platform/linux/DesktopMotion.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/QSettingsWindowState.h"
#include "platform/linux/QtClipboard.h"
#include "platform/linux/SaveDialog.h"
#include "screens/Graphics.h"
#include "screens/MainWindow.h"
#include "screens/RootScreen.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <QGuiApplication>

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>

namespace {

// A program started with this signal ignored keeps it so, and then no child of its own leaves an exit status.
void keepExitStatusOfChildren() {
    std::signal(SIGCHLD, SIG_DFL);
}

// A core file would hold the keys of every model. The process stays open to its user's debugger all the same:
// whoever may attach one may read the keychain too.
void forbidCoreFiles() {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

// A comparison opens a connection for each of its models at once, and the usual soft limit of 1024 is kept
// only for programs that still call select().
void raiseDescriptorLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

int main(int argc, char* argv[]) {
    keepExitStatusOfChildren();
    quorl::forbidBusAutolaunch();
    forbidCoreFiles();
    raiseDescriptorLimit();
    quorl::chooseRenderer();

    QGuiApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("com.quorltest.app"));

    quorl::LinuxPlatform desktop;
    quorl::QtClipboard clipboard;
    quorl::DesktopMotion motion(desktop.services.mainThread, desktop.directories.config);
    quorl::QSettingsWindowState windowState(quorl::windowStateFile(desktop.directories));
    quorl::HTTPSession session;
    const quorl::DecisionRouter router(session);
    quorl::Workers workers;
    quorl::LocalAPIServer api;
    quorl::AppModel model(desktop.services, router, workers);
    model.startAPI(api);
    quorl::RootScreen screens(model, {.clock = desktop.services.clock,
                                      .defaults = desktop.services.defaults,
                                      .clipboard = clipboard,
                                      .motion = motion,
                                      .windowState = windowState});
    quorl::MainWindow window(screens);
    quorl::SaveDialog saveDialog(window.window(), desktop.services.defaults);
    screens.setFileSaver(saveDialog);

    const int status = QGuiApplication::exec();

    screens.settle();
    QCoreApplication::sendPostedEvents(); // the settings are written at the end of a turn, and this was the
                                          // last
    // Leaving here and now: the destructors would wait for every request still under way, up to its time
    // limit. An answer that is cut off is marked at the next start, and the library needs no closing.
    std::_Exit(status);
}
