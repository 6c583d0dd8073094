#include "lsp/PendingRequests.h"

namespace ombrel::lsp {

std::optional<PendingRequests::Ticket> PendingRequests::start(const Json& id) {
    const std::lock_guard guard(mutex);
    const auto [entry, isNew] = tickets.emplace(id.dump(), lastTicket + 1);
    return isNew ? std::optional(++lastTicket) : std::nullopt;
}

bool PendingRequests::isPending(const Json& id, Ticket ticket) const {
    const std::lock_guard guard(mutex);
    const auto found = tickets.find(id.dump());
    return found != tickets.end() && found->second == ticket;
}

bool PendingRequests::finish(const Json& id, Ticket ticket) {
    const std::lock_guard guard(mutex);
    const auto found = tickets.find(id.dump());
    if (found == tickets.end() || found->second != ticket) {
        return false;
    }
    tickets.erase(found);
    return true;
}

bool PendingRequests::cancel(const Json& id) {
    const std::lock_guard guard(mutex);
    return tickets.erase(id.dump()) > 0;
}

} // namespace ombrel::lsp
