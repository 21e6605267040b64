#include "api/LocalAPIServer.h"
#include "api/QuorlAPI.h"
#include "app/AppModel.h"
#include "base/Text.h"

namespace quorl {

namespace {

constexpr const char* apiTokenKey = "api.token";

std::string makeToken() {
    std::string token = UUID::random().text();
    std::erase(token, '-');
    return Text::lowercased(token);
}

} // namespace

void AppModel::startAPI(LocalAPIServer& server) {
    startAPI(server, LocalAPIServer::defaultPort);
}

void AppModel::startAPI(LocalAPIServer& server, std::uint16_t port) {
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
    server.start(port);
    apiBase = "http://127.0.0.1:" + std::to_string(server.boundPort().value_or(LocalAPIServer::defaultPort));
    // Before the listener has told anything: a refused port replaces it once that is known.
    apiMessage = server.failure().value_or("Listening");
}

// Whatever is stored is used as it stands: a user may have put a token of their own there.
void AppModel::loadAPIToken() {
    std::string token = platform.defaults.string(apiTokenKey).value_or("");
    if (token.empty()) {
        token = makeToken();
        platform.defaults.setString(apiTokenKey, token);
    }
    apiToken = std::move(token);
}

} // namespace quorl
