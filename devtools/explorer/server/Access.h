#pragma once

#include "explorer/server/RequestHead.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ombrel {

/// What a server knows about who may talk to it.
struct AccessRules {
    std::uint16_t port;
    std::string token; ///< random for each start
};

/// What is served: a resource that everybody on this machine may see, or an operation for the page alone.
struct Route {
    std::string_view method; ///< "GET" or "POST"
    bool needsToken;
};

/// Whether a value of Host names this server: 127.0.0.1, localhost or [::1] in exactly this spelling, and the
/// port.
bool isOwnHost(std::string_view host, std::uint16_t port);

/// Whether a value of Origin is that of this server's page.
bool isOwnOrigin(std::string_view origin, std::uint16_t port);

/// Decides whether a request may go on, from its head alone. Nothing is read or done before. `route` is what
/// the target names, null if it names nothing.
///
/// A page of somebody else's can send requests to this server, and a name of theirs can be made to lead here.
/// So the server's own name has to be in Host, and its own page in Origin; operations need the token, which
/// only the page knows, and a content type that no form of another page can send.
std::optional<Refusal> checkAccess(const RequestHead& head, const Route* route, const AccessRules& rules);

/// A token that can't be guessed: 128 random bits as 32 hexadecimal digits.
std::string makeToken();

} // namespace ombrel
