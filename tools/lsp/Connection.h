#pragma once

#include "lsp/Json.h"
#include "lsp/Protocol.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ombrel::lsp {

/// The way out: writes responses, notifications and requests of the server. All members may be called on
/// several threads at once; messages never mix.
class Connection {
public:
    /// Takes the body of one message. Is never called on two threads at once.
    using Send = std::function<void(std::string_view body)>;

    /// Called with the result that the client answered; a null pointer stands for an error.
    using Answer = std::function<void(const Json* result)>;

    explicit Connection(Send send) : send(std::move(send)) {}

    void respond(const Json& id, Json result);
    void refuse(const Json& id, ErrorCode code, const std::string& text);
    void notify(const std::string& method, Json params);
    void request(const std::string& method, Json params, Answer answer = {});

    /// Handles the client's response to a request. One that wasn't asked for is ignored.
    void handleResponse(const Json& message);

private:
    void write(const Json& message);

    Send send;
    std::mutex sending;
    std::mutex mutex; ///< guards what follows
    std::int64_t lastId = 0;
    std::unordered_map<std::int64_t, Answer> waiting;
};

} // namespace ombrel::lsp
