#include "api/LocalAPIServer.h"
#include "api/QuorlAPI.h"
#include "app/AppModel.h"

namespace quorl {

void AppModel::startAPI(LocalAPIServer& server) {
    loadAPIToken();
    server.handler = [&mainThread = platform.mainThread,
                      model = std::weak_ptr(alive)](HTTPRequest request, LocalAPIServer::Reply reply) {
        mainThread.post([model, request = std::move(request), reply = std::move(reply)] {
            const auto present = model.lock();
            reply(present ? QuorlAPI::respond(request, **present)
                          : makeErrorReply(500, "Quorl is not running."));
        });
    };
    server.onState = [&mainThread = platform.mainThread,
                      model = std::weak_ptr(alive)](const std::optional<std::string>& failure) {
        mainThread.post([model, message = failure.value_or("Listening")] {
            if (const auto present = model.lock())
                (*present)->apiMessage = message;
        });
    };
    server.start(LocalAPIServer::defaultPort);
    apiBase = "http://127.0.0.1:" + std::to_string(server.boundPort().value_or(LocalAPIServer::defaultPort));
    // Before the listener has told anything: a refused port replaces it once that is known.
    apiMessage = server.failure().value_or("Listening");
}

} // namespace quorl
