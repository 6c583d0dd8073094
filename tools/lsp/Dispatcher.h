#pragma once

#include "lsp/Json.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ombrel::lsp {

/// From the name of a method to what handles it.
class Dispatcher {
public:
    using RequestHandler = std::function<void(const Json& id, const Json& params)>;
    using NotificationHandler = std::function<void(const Json& params)>;

    void onRequest(const std::string& method, RequestHandler handler) {
        requests.emplace(method, std::move(handler));
    }

    void onNotification(const std::string& method, NotificationHandler handler) {
        notifications.emplace(method, std::move(handler));
    }

    /// Null if nothing handles the method.
    const RequestHandler* findRequest(const std::string& method) const { return find(requests, method); }
    const NotificationHandler* findNotification(const std::string& method) const {
        return find(notifications, method);
    }

private:
    template <class Handler>
    static const Handler* find(const std::unordered_map<std::string, Handler>& handlers,
                               const std::string& method) {
        const auto found = handlers.find(method);
        return found == handlers.end() ? nullptr : &found->second;
    }

    std::unordered_map<std::string, RequestHandler> requests;
    std::unordered_map<std::string, NotificationHandler> notifications;
};

} // namespace ombrel::lsp
