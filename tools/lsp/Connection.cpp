#include "lsp/Connection.h"

#include <utility>

namespace ombrel::lsp {

void Connection::respond(const Json& id, Json result) {
    write({{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}});
}

void Connection::refuse(const Json& id, ErrorCode code, const std::string& text) {
    const Json error = {{"code", static_cast<int>(code)}, {"message", text}};
    write({{"jsonrpc", "2.0"}, {"id", id}, {"error", error}});
}

void Connection::notify(const std::string& method, Json params) {
    write({{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}});
}

void Connection::request(const std::string& method, Json params, Answer answer) {
    std::int64_t id = 0;
    {
        const std::lock_guard guard(mutex);
        id = ++lastId;
        waiting.emplace(id, std::move(answer));
    }
    write({{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", std::move(params)}});
}

void Connection::handleResponse(const Json& message) {
    const Json& id = message.at("id");
    if (!id.is_number_integer()) {
        return;
    }
    Answer answer;
    {
        const std::lock_guard guard(mutex);
        const auto found = waiting.find(id.get<std::int64_t>());
        if (found == waiting.end()) {
            return;
        }
        answer = std::move(found->second);
        waiting.erase(found);
    }
    if (answer) {
        const auto result = message.find("result");
        answer(result == message.end() ? nullptr : &*result);
    }
}

/// What isn't UTF-8, such as the bytes of a file's name in a message, is replaced.
void Connection::write(const Json& message) {
    const std::string body = message.dump(-1, ' ', false, Json::error_handler_t::replace);
    const std::lock_guard guard(sending);
    send(body);
}

} // namespace ombrel::lsp
